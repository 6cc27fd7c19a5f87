#include "Platform/Gtk/GLibLogSystem.h"

namespace fcp {

std::shared_ptr<Log> GLibLogSystem::makeLog(std::string const& subsystem, std::string const& category) {
    return std::make_shared<GLibLog>(subsystem, category);
}

Log& GLibLogSystem::defaultLog() {
    return orphans;
}

} // namespace fcp
