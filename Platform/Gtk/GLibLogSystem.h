#pragma once

#include "Platform/Gtk/GLibLog.h"

namespace fcp {

class GLibLogSystem final : public LogSystem {
public:
    [[nodiscard]] std::shared_ptr<Log> makeLog(std::string const& subsystem,
                                               std::string const& category) override;
    [[nodiscard]] Log& defaultLog() override;

private:
    GLibLog orphans;
};

} // namespace fcp
