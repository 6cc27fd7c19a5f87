#pragma once

#include "Workbench/HostEditor/HostBridge.h"

namespace workbench {

// Makes the host that the panel finds by its exported name; it stays for the rest of the process. Once,
// before the panel is loaded.
HostBridge& publishHost(HostBridge::Delivery delivery);

} // namespace workbench
