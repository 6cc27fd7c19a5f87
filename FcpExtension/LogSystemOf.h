#pragma once

#include "Ports/Log.h"

namespace fcp {

// The logs of a platform. Its `PlatformLog` is made of subsystem and category, and without them is the
// default log.
template <typename PlatformLog>
class LogSystemOf final : public LogSystem {
public:
    [[nodiscard]] std::shared_ptr<Log> makeLog(std::string const& subsystem,
                                               std::string const& category) override {
        return std::make_shared<PlatformLog>(subsystem, category);
    }

    [[nodiscard]] Log& defaultLog() override { return orphans; }

private:
    PlatformLog orphans;
};

} // namespace fcp
