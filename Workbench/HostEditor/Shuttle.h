#pragma once

namespace workbench {

enum class Direction { Back, On };

// The speed after another press of the key that plays in this direction: single at first and after the other
// direction, then twice as fast each time, up to eight times. 0 is standing, below 0 is backwards.
[[nodiscard]] double nextShuttleSpeed(double current, Direction direction);

} // namespace workbench
