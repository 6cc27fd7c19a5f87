#pragma once

#include <memory>
#include <string>

namespace fcp {

// One destination of log lines. Any thread. Lines are public: nothing in them is masked.
class Log {
public:
    virtual ~Log() = default;
    virtual void debug(std::string const& line) = 0;
    virtual void info(std::string const& line) = 0;
    virtual void error(std::string const& line) = 0;
};

class LogSystem {
public:
    virtual ~LogSystem() = default;

    [[nodiscard]] virtual std::shared_ptr<Log> makeLog(std::string const& subsystem,
                                                       std::string const& category) = 0;

    // For lines that outlive the owner of a named log.
    [[nodiscard]] virtual Log& defaultLog() = 0;
};

} // namespace fcp
