#pragma once

#include <glib.h>

#include <cstdint>

namespace fcp {

// How long one source may hold a turn of the loop: half of a 60 Hz frame. What it does not finish waits for
// the next turn, so that a flood of tasks leaves the page and the pointer alive.
class TurnBudget {
public:
    [[nodiscard]] bool spent() const { return g_get_monotonic_time() >= end; }

private:
    static constexpr std::int64_t microseconds = 8000;
    std::int64_t const end = g_get_monotonic_time() + microseconds;
};

} // namespace fcp
