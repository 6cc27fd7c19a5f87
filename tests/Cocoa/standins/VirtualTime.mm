#include "Cocoa/VirtualTime.h"

#include "Platform/Cocoa/RetainPtr.h"

#import <Foundation/Foundation.h>

#include <dispatch/dispatch.h>
#include <objc/runtime.h>

#include <Block.h>

#include <deque>
#include <functional>
#include <map>
#include <utility>

// The main queue and block timers in virtual time. Main thread only.

struct dispatch_queue_s {};

using fcp::RetainPtr;

using TimerBlock = void (^)(NSTimer*);

@interface StandinTimer : NSObject {
@public
    TimerBlock block;
    bool isLive;
}
- (void)invalidate;
- (void)fire;
@end

namespace {

struct Schedule {
    dispatch_time_t now = 1; // zero names the present
    std::deque<std::function<void()>> ready;
    std::multimap<dispatch_time_t, std::function<void()>> owed; // equal moments in the order of the calls
    std::size_t timers = 0;
};

Schedule& schedule() {
    static auto* const made = new Schedule;
    return *made;
}

dispatch_time_t nanoseconds(double seconds) {
    return static_cast<dispatch_time_t>(seconds * NSEC_PER_SEC);
}

void runReady() {
    while (!schedule().ready.empty()) {
        auto const work = std::move(schedule().ready.front());
        schedule().ready.pop_front();
        work();
    }
}

id scheduledTimer(id, SEL, NSTimeInterval seconds, BOOL, TimerBlock block) {
    auto const timer = RetainPtr<StandinTimer*>::adopt([[StandinTimer alloc] init]);
    timer.get()->block = Block_copy(block);
    timer.get()->isLive = true;
    ++schedule().timers;
    schedule().owed.emplace(schedule().now + nanoseconds(seconds), [timer] { [timer.get() fire]; });
    return [[timer.get() retain] autorelease];
}

} // namespace

@implementation StandinTimer

+ (void)load {
    @autoreleasepool {
        auto* const method =
            class_getClassMethod([NSTimer class], @selector(scheduledTimerWithTimeInterval:repeats:block:));
        method_setImplementation(method, reinterpret_cast<IMP>(scheduledTimer));
    }
}

- (void)invalidate {
    if (std::exchange(isLive, false))
        --schedule().timers;
}

- (void)fire {
    if (!isLive)
        return;
    [self invalidate];
    block(static_cast<NSTimer*>(static_cast<id>(self)));
}

- (void)dealloc {
    Block_release(block);
    [super dealloc];
}

@end

dispatch_queue_t dispatch_get_main_queue() {
    static dispatch_queue_s main;
    return &main;
}

dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta) {
    if (when == DISPATCH_TIME_FOREVER)
        return when;
    return (when == DISPATCH_TIME_NOW ? schedule().now : when) + static_cast<dispatch_time_t>(delta);
}

void dispatch_async_f(dispatch_queue_t, void* context, dispatch_function_t work) {
    schedule().ready.emplace_back([context, work] { work(context); });
}

void dispatch_after_f(dispatch_time_t when, dispatch_queue_t, void* context, dispatch_function_t work) {
    schedule().owed.emplace(when, [context, work] { work(context); });
}

namespace fcp::test {

void advanceTime(Seconds duration) {
    auto const end = schedule().now + nanoseconds(duration.count());
    runReady();
    while (!schedule().owed.empty() && schedule().owed.begin()->first <= end) {
        @autoreleasepool {
            schedule().now = schedule().owed.begin()->first;
            auto const work = schedule().owed.extract(schedule().owed.begin()).mapped();
            work();
            runReady();
        }
    }
    schedule().now = end;
}

std::size_t liveTimers() {
    return schedule().timers;
}

} // namespace fcp::test
