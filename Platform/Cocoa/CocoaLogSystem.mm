#include "Platform/Cocoa/CocoaLogSystem.h"

namespace fcp {

std::shared_ptr<Log> CocoaLogSystem::makeLog(std::string const& subsystem, std::string const& category) {
    return std::make_shared<CocoaLog>(subsystem, category);
}

Log& CocoaLogSystem::defaultLog() {
    return orphans;
}

} // namespace fcp
