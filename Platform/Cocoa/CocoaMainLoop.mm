#include "Platform/Cocoa/CocoaMainLoop.h"

#include "FcpExtension/Delay.h"
#include "FcpExtension/OneShotTask.h"
#include "Platform/Cocoa/RetainPtr.h"

#include <dispatch/dispatch.h>

#include <chrono>
#include <utility>

namespace fcp {

namespace {

using Task = std::function<void()>;

// The functions of the queue take a plain pointer, so that the task has one owner and ends where it ran. A
// block would leave a copy of it with the thread that posts.
void runTask(void* owned) {
    std::unique_ptr<Task> const task(static_cast<Task*>(owned));
    @autoreleasepool {
        (*task)();
    }
}

void* handOver(Task task) {
    return std::make_unique<Task>(std::move(task)).release();
}

class CocoaTimer final : public Timer {
public:
    CocoaTimer(std::shared_ptr<OneShotTask> task, NSTimer* scheduledTimer)
        : owed(std::move(task))
        , timer(RetainPtr<NSTimer*>::retain(scheduledTimer)) {}

    void invalidate() override {
        [timer.get() invalidate];
        owed->drop(); // may end this handle, and with it the last reference to what is dropped
    }

private:
    std::shared_ptr<OneShotTask> const owed;
    RetainPtr<NSTimer*> const timer;
};

} // namespace

bool CocoaMainLoop::isMainThread() const {
    return [NSThread isMainThread];
}

void CocoaMainLoop::post(std::function<void()> task) {
    dispatch_async_f(dispatch_get_main_queue(), handOver(std::move(task)), runTask);
}

void CocoaMainLoop::after(Seconds delay, std::function<void()> task) {
    auto const moment = dispatch_time(DISPATCH_TIME_NOW, ticksOf<std::chrono::nanoseconds>(delay));
    dispatch_after_f(moment, dispatch_get_main_queue(), handOver(std::move(task)), runTask);
}

std::unique_ptr<Timer> CocoaMainLoop::timer(Seconds interval, std::function<void()> task) {
    auto const owed = std::make_shared<OneShotTask>(std::move(task));
    // Not the block but the task in it is what an invalidated timer lets go of, at once and on every system.
    auto* const timer = [NSTimer scheduledTimerWithTimeInterval:usableDelay(interval).count()
                                                        repeats:NO
                                                          block:^(NSTimer*) {
                                                            owed->run();
                                                          }];
    return std::make_unique<CocoaTimer>(owed, timer);
}

} // namespace fcp
