#pragma once

#include <functional>
#include <utility>

namespace fcp {

// What a timer owes: runs at most once and can be dropped before, from inside itself too. Either way it lets
// go of what the task holds. One thread only.
class OneShotTask {
public:
    explicit OneShotTask(std::function<void()> task)
        : owed(std::move(task)) {}

    OneShotTask(OneShotTask const&) = delete;
    OneShotTask& operator=(OneShotTask const&) = delete;

    void run() {
        if (auto const task = std::exchange(owed, nullptr))
            task();
    }

    // The task goes last: it may own whoever drops it.
    void drop() { auto const dropped = std::exchange(owed, nullptr); }

private:
    std::function<void()> owed;
};

} // namespace fcp
