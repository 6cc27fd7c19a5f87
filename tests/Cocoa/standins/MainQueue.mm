#import <Foundation/Foundation.h>

#include <dispatch/dispatch.h>

#include <chrono>
#include <deque>
#include <map>
#include <mutex>

// The main queue on top of the main thread's run loop.

struct dispatch_queue_s {};

@interface StandinMainQueue : NSObject
+ (void)runNext;
+ (void)waitForEarliest;
+ (void)runDue;
@end

namespace {

struct Work {
    void* context;
    dispatch_function_t function;
};

struct Queue {
    std::mutex mutex;
    std::deque<Work> ready;
    std::multimap<dispatch_time_t, Work> owed; // equal moments in the order of the calls
};

Queue& queue() {
    static auto* const made = new Queue;
    return *made;
}

dispatch_time_t now() {
    using namespace std::chrono;
    auto const elapsed = steady_clock::now().time_since_epoch();
    return static_cast<dispatch_time_t>(duration_cast<nanoseconds>(elapsed).count());
}

void onMainThread(SEL selector) {
    @autoreleasepool {
        [[StandinMainQueue class] performSelectorOnMainThread:selector withObject:nil waitUntilDone:NO];
    }
}

bool takeReady(Work& work) {
    std::lock_guard const guard(queue().mutex);
    if (queue().ready.empty())
        return false;
    work = queue().ready.front();
    queue().ready.pop_front();
    return true;
}

bool takeDue(Work& work) {
    std::lock_guard const guard(queue().mutex);
    auto const earliest = queue().owed.begin();
    if (earliest == queue().owed.end() || earliest->first > now())
        return false;
    work = earliest->second;
    queue().owed.erase(earliest);
    return true;
}

} // namespace

@implementation StandinMainQueue

+ (void)runNext {
    Work work{};
    if (takeReady(work))
        work.function(work.context);
}

+ (void)waitForEarliest {
    dispatch_time_t earliest = DISPATCH_TIME_FOREVER;
    {
        std::lock_guard const guard(queue().mutex);
        if (!queue().owed.empty())
            earliest = queue().owed.begin()->first;
    }
    if (earliest == DISPATCH_TIME_FOREVER)
        return;
    auto const current = now();
    double const seconds = earliest > current ? static_cast<double>(earliest - current) / NSEC_PER_SEC : 0;
    [NSTimer scheduledTimerWithTimeInterval:seconds
                                     target:self
                                   selector:@selector(runDue)
                                   userInfo:nil
                                    repeats:NO];
}

+ (void)runDue {
    Work work{};
    while (takeDue(work))
        work.function(work.context);
    [self waitForEarliest];
}

@end

dispatch_queue_t dispatch_get_main_queue() {
    static dispatch_queue_s main;
    return &main;
}

dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta) {
    if (when == DISPATCH_TIME_FOREVER)
        return when;
    return (when == DISPATCH_TIME_NOW ? now() : when) + static_cast<dispatch_time_t>(delta);
}

void dispatch_async_f(dispatch_queue_t, void* context, dispatch_function_t work) {
    {
        std::lock_guard const guard(queue().mutex);
        queue().ready.push_back({context, work});
    }
    onMainThread(@selector(runNext));
}

void dispatch_after_f(dispatch_time_t when, dispatch_queue_t target, void* context,
                      dispatch_function_t work) {
    if (when <= now()) {
        dispatch_async_f(target, context, work);
        return;
    }
    {
        std::lock_guard const guard(queue().mutex);
        queue().owed.emplace(when, Work{context, work});
    }
    onMainThread(@selector(waitForEarliest));
}
