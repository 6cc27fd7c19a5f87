#include "Cocoa/Desktop.h"

#include "Platform/Cocoa/Conversions.h"

#import <AppKit/AppKit.h>
#include <objc/runtime.h>

#include <utility>

// Stands in for the desktop, which opens nothing and says that it could not.
@interface RecordingWorkspace : NSObject
- (BOOL)openURL:(NSURL*)url;
- (NSNotificationCenter*)notificationCenter; // applications ask for it
@end

namespace {

std::vector<std::string> opened;

id recordingWorkspace(id, SEL) {
    static auto* const workspace = [[RecordingWorkspace alloc] init];
    return workspace;
}

} // namespace

@implementation RecordingWorkspace

+ (void)load {
    @autoreleasepool {
        auto* const method = class_getClassMethod([NSWorkspace class], @selector(sharedWorkspace));
        method_setImplementation(method, reinterpret_cast<IMP>(recordingWorkspace));
    }
}

- (BOOL)openURL:(NSURL*)url {
    opened.push_back(fcp::readString([url absoluteString]).value_or("nil"));
    return NO;
}

- (NSNotificationCenter*)notificationCenter {
    return [NSNotificationCenter defaultCenter];
}

@end

namespace fcp::test {

std::vector<std::string> takeOpenedAddresses() {
    return std::exchange(opened, {});
}

} // namespace fcp::test
