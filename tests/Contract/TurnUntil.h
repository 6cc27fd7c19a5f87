#pragma once

#include <functional>

namespace fcp::test {

// Runs GLib's default main loop until the condition holds; false after 20 s without.
[[nodiscard]] bool turnUntil(std::function<bool()> const& condition);

// Runs the loop until nothing in it is ready any more.
void turnWhileReady();

} // namespace fcp::test
