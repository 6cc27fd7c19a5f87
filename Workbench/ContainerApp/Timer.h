#pragma once

#include <chrono>
#include <functional>

namespace workbench {

// One task that runs later on the main loop. Starting it anew forgets what was pending, and so does its end.
// Main thread only.
class Timer {
public:
    Timer() = default;
    ~Timer();

    Timer(Timer const&) = delete;
    Timer& operator=(Timer const&) = delete;

    void start(std::chrono::milliseconds delay, std::function<void()> theTask);
    void cancel();

    [[nodiscard]] bool isPending() const { return source != 0; }

private:
    static int fire(void* self);

    std::function<void()> task;
    unsigned source = 0;
};

// Runs `task` on the main thread, on a later turn of the main loop. Any thread.
void postToMainLoop(std::function<void()> task);

} // namespace workbench
