#pragma once

#include "Platform/Cocoa/CocoaLog.h"

namespace fcp {

class CocoaLogSystem final : public LogSystem {
public:
    [[nodiscard]] std::shared_ptr<Log> makeLog(std::string const& subsystem,
                                               std::string const& category) override;
    [[nodiscard]] Log& defaultLog() override;

private:
    CocoaLog orphans;
};

} // namespace fcp
