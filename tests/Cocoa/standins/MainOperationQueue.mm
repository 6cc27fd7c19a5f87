#import <Foundation/Foundation.h>

// The main operation queue runs its operations on the main thread, which the library's own does not.
@interface StandinMainOperationQueue : NSOperationQueue
@end

@implementation StandinMainOperationQueue

- (void)addOperation:(NSOperation*)operation {
    [operation performSelectorOnMainThread:@selector(start) withObject:nil waitUntilDone:NO];
}

@end

@implementation NSOperationQueue (StandinMainOperationQueue)

+ (id)mainQueue {
    static auto* const queue = [[StandinMainOperationQueue alloc] init];
    return queue;
}

@end
