#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace fcp {

using Seconds = std::chrono::duration<double>;

// A one-shot timer that is still owed or has fired. Main thread only. Destroying the handle does not
// invalidate the timer: the overlay timers outlive their owner and still write their log line.
class Timer {
public:
    virtual ~Timer() = default;

    // Safe at any time, also after the timer has fired and from inside its own task.
    virtual void invalidate() = 0;
};

// The main thread's loop. Tasks run on the main thread, never inside the call that hands them over.
class MainLoop {
public:
    virtual ~MainLoop() = default;

    // Any thread.
    [[nodiscard]] virtual bool isMainThread() const = 0;

    // Runs `task` on a later turn, in the order of the posts. Any thread; the task is also destroyed on
    // the main thread.
    virtual void post(std::function<void()> task) = 0;

    // Fire and forget: cannot be cancelled, and tens of thousands may be owed at once. Never runs early; a
    // delay that is negative or not a number is none, and an infinite one never ends. Main thread only.
    virtual void after(Seconds delay, std::function<void()> task) = 0;

    // Reads its interval as `after` does. Main thread only.
    [[nodiscard]] virtual std::unique_ptr<Timer> timer(Seconds interval, std::function<void()> task) = 0;
};

} // namespace fcp
