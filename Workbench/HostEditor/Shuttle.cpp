#include "Workbench/HostEditor/Shuttle.h"

#include <algorithm>
#include <cmath>

namespace workbench {

double nextShuttleSpeed(double current, Direction direction) {
    constexpr double fastest = 8;
    auto const sign = direction == Direction::On ? 1.0 : -1.0;
    return current * sign > 0 ? sign * std::min(std::abs(current) * 2, fastest) : sign;
}

} // namespace workbench
