#pragma once

#include "Ports/MainLoop.h"

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace fcp {

// What the loops of every platform make of a delay.

// No process lives so long, and a counter of nanoseconds holds it nearly three times.
inline constexpr Seconds endlessDelay{100.0 * 365 * 24 * 3600};

// None for a delay that is negative or not a number.
[[nodiscard]] constexpr Seconds usableDelay(Seconds delay) {
    return delay > Seconds::zero() ? std::min(delay, endlessDelay) : Seconds::zero();
}

// In whole ticks of a clock, rounded up: a delay is never cut short.
template <typename Tick>
[[nodiscard]] constexpr std::int64_t ticksOf(Seconds delay) {
    return std::chrono::ceil<Tick>(usableDelay(delay)).count();
}

} // namespace fcp
