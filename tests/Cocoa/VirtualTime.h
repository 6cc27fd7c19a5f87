#pragma once

#include "Ports/MainLoop.h"

#include <cstddef>

namespace fcp::test {

// The main queue and the timers of the main run loop, whose time moves only when a test moves it.

// Runs what falls due on the way, at its own moment, and what was posted.
void advanceTime(Seconds duration);

// Timers that are neither fired nor invalidated.
[[nodiscard]] std::size_t liveTimers();

} // namespace fcp::test
