#include "Platform/Cocoa/CocoaWorkspace.h"

#include "Platform/Cocoa/Conversions.h"

#import <AppKit/AppKit.h>

namespace fcp {

void CocoaWorkspace::open(Url const& url) {
    [[NSWorkspace sharedWorkspace] openURL:makeUrl(url).get()];
}

} // namespace fcp
