#import <Foundation/Foundation.h>
#include <objc/runtime.h>

// The main operation queue runs its operations on the main thread, which the library's own does not.
@interface StandinMainOperationQueue : NSOperationQueue
@end

namespace {

id mainQueue(id, SEL) {
    static auto* const queue = [[StandinMainOperationQueue alloc] init];
    return queue;
}

} // namespace

@implementation StandinMainOperationQueue

// A category would not always win over the library's own method.
+ (void)load {
    @autoreleasepool {
        auto* const method = class_getClassMethod([NSOperationQueue class], @selector(mainQueue));
        method_setImplementation(method, reinterpret_cast<IMP>(mainQueue));
    }
}

- (void)addOperation:(NSOperation*)operation {
    [operation performSelectorOnMainThread:@selector(start) withObject:nil waitUntilDone:NO];
}

@end
