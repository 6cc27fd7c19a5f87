#include "Cocoa/RunLoop.h"

#include "Platform/Cocoa/RetainPtr.h"

#include <chrono>

namespace fcp::test {

bool turnRunLoopUntil(std::function<bool()> const& condition) {
    using Clock = std::chrono::steady_clock;
    auto const deadline = Clock::now() + std::chrono::seconds(20);
    // A loop without a timer or another source does not turn at all. This one also wakes it for conditions
    // that come true without an event.
    auto const wake = RetainPtr<NSTimer*>::retain([NSTimer scheduledTimerWithTimeInterval:0.005
                                                                                   target:[NSObject class]
                                                                                 selector:@selector(class)
                                                                                 userInfo:nil
                                                                                  repeats:YES]);
    while (!condition() && Clock::now() < deadline) {
        @autoreleasepool {
            [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode
                                     beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.1]];
        }
    }
    [wake.get() invalidate];
    return condition();
}

Pool::Pool()
    : pool([[NSAutoreleasePool alloc] init]) {
    // What is handed to a main thread whose run loop was never asked for runs inside the call.
    (void)[NSRunLoop currentRunLoop];
}

Pool::~Pool() {
    [static_cast<NSAutoreleasePool*>(pool) drain];
}

} // namespace fcp::test
