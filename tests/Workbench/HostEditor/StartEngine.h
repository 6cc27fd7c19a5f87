#pragma once

#include "Workbench/HostEditor/MediaEngine.h"

#include <glibmm.h>

namespace workbench {

// The engine, for all cases of a test program: it can be started once in a process.
inline void startEngine() {
    Glib::init();
    static MediaEngine const engine;
}

} // namespace workbench
