#pragma once

#include "Ports/MainLoop.h"

#include <functional>

namespace fcp::test {

// Turns the main thread's run loop until the condition holds; false after 20 s without. Main thread only.
[[nodiscard]] bool turnRunLoopUntil(std::function<bool()> const& condition);

// Ends what was autoreleased since this object was made.
class Pool {
public:
    Pool();
    ~Pool();

    Pool(Pool const&) = delete;
    Pool& operator=(Pool const&) = delete;

private:
    void* const pool;
};

} // namespace fcp::test
