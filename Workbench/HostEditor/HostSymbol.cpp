#include "Workbench/HostEditor/HostSymbol.h"

namespace workbench {

namespace {

// Never deleted: the panel keeps what it was given as long as the process lives.
HostBridge* published = nullptr;

} // namespace

HostBridge& publishHost(HostBridge::Delivery delivery) {
    published = new HostBridge{delivery};
    return *published;
}

} // namespace workbench

fcp::FCPXHost* ProExtensionHostSingleton() {
    return workbench::published;
}
