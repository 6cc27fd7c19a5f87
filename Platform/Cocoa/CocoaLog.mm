#include "Platform/Cocoa/CocoaLog.h"

#include "Platform/Cocoa/Conversions.h"

#include <os/log.h>

namespace fcp {

struct CocoaLog::Destination {
    RetainPtr<os_log_t> const log;

    void write(os_log_type_t type, std::string const& line) const {
        os_log_with_type(log.get(), type, "%{public}@", makeString(line).get());
    }
};

CocoaLog::CocoaLog()
    : destination(new Destination{RetainPtr<os_log_t>::retain(OS_LOG_DEFAULT)}) {}

CocoaLog::CocoaLog(std::string const& subsystem, std::string const& category)
    : destination(
          new Destination{RetainPtr<os_log_t>::adopt(os_log_create(subsystem.c_str(), category.c_str()))}) {}

CocoaLog::~CocoaLog() = default;

void CocoaLog::debug(std::string const& line) {
    destination->write(OS_LOG_TYPE_DEBUG, line);
}

void CocoaLog::info(std::string const& line) {
    destination->write(OS_LOG_TYPE_INFO, line);
}

void CocoaLog::error(std::string const& line) {
    destination->write(OS_LOG_TYPE_ERROR, line);
}

} // namespace fcp
