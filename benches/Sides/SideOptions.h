#pragma once

#include "benches/Sides/Burst.h"

#include <string>

namespace fcp::bench {

// The command line of a side that shows a page:
// [--burst FRAMES] [--from-thread] [--timeouts N] [--say-finished] URL
struct SideOptions {
    std::string url;
    int burst = 0;
    Burst::Thread burstThread = Burst::Thread::Main;
    int timeouts = 0; // that are pending all the time, for ours only
    bool saysFinished = false; // with a line when the page has finished loading
};

// Ends the process with status 2 for anything else.
[[nodiscard]] SideOptions readSideOptions(int argc, char** argv);

// Has the kernel end this process when the measuring program is gone.
void endWithParent();

// Prints "finished NANOSECONDS", in the time of the monotonic clock.
void sayFinished();

} // namespace fcp::bench
