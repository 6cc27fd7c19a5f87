#pragma once

#include "Ports/Log.h"

#include <memory>

namespace fcp {

// Writes lines to the unified log, as public values. Any thread.
class CocoaLog final : public Log {
public:
    // The process's default log: no subsystem, no category.
    CocoaLog();

    CocoaLog(std::string const& subsystem, std::string const& category);
    ~CocoaLog() override;

    CocoaLog(CocoaLog const&) = delete;
    CocoaLog& operator=(CocoaLog const&) = delete;

    void debug(std::string const& line) override;
    void info(std::string const& line) override;
    void error(std::string const& line) override;

private:
    struct Destination;

    std::unique_ptr<Destination const> const destination;
};

} // namespace fcp
