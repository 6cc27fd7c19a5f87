#pragma once

#include "Workbench/HostEditor/Options.h"

namespace workbench {

// Runs the workbench until its window is closed or a signal ends it; answers the process's exit status. Once,
// on the main thread.
[[nodiscard]] int runWorkbench(Options const& options);

} // namespace workbench
