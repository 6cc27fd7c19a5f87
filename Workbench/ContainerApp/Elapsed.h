#pragma once

#include <chrono>
#include <string>

namespace workbench {

// " (0.42 ms)": how long something took, to go behind the line that tells of it.
[[nodiscard]] std::string elapsedSince(std::chrono::steady_clock::time_point begun);

} // namespace workbench
