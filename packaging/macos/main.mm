#import <AppKit/AppKit.h>

#include "Platform/Cocoa/RetainPtr.h"

using fcp::RetainPtr;

namespace {

NSString* const purpose =
    @"This application carries the Zelvix panel for Final Cut Pro. macOS registers the panel once the "
    @"application has been opened from the Applications folder.\n\n"
    @"In Final Cut Pro, choose Window > Extensions > Zelvix. This application need not be open for that: "
    @"you can close it.";

RetainPtr<NSTextField*> makeLabel() {
    auto const label =
        RetainPtr<NSTextField*>::adopt([[NSTextField alloc] initWithFrame:NSMakeRect(20, 20, 400, 110)]);
    [label.get() setStringValue:purpose];
    [label.get() setBezeled:NO];
    [label.get() setDrawsBackground:NO];
    [label.get() setEditable:NO];
    [label.get() setSelectable:NO];
    return label;
}

RetainPtr<NSWindow*> makeWindow() {
    auto const window = RetainPtr<NSWindow*>::adopt([[NSWindow alloc]
        initWithContentRect:NSMakeRect(0, 0, 440, 150)
                  styleMask:NSWindowStyleMaskTitled | NSWindowStyleMaskClosable
                    backing:NSBackingStoreBuffered
                      defer:NO]);
    [window.get() setReleasedWhenClosed:NO]; // ours goes when the application does
    [window.get() setTitle:@"Zelvix"];
    [[window.get() contentView] addSubview:makeLabel().get()];
    [window.get() center];
    return window;
}

// The menu bar with the one item that everybody looks for.
RetainPtr<NSMenu*> makeMenu() {
    auto const commands = RetainPtr<NSMenu*>::adopt([[NSMenu alloc] initWithTitle:@"Zelvix"]);
    [commands.get() addItemWithTitle:@"Quit Zelvix" action:@selector(terminate:) keyEquivalent:@"q"];
    auto const bar = RetainPtr<NSMenu*>::adopt([[NSMenu alloc] initWithTitle:@""]);
    auto* const item = [bar.get() addItemWithTitle:@"Zelvix" action:nullptr keyEquivalent:@""];
    [bar.get() setSubmenu:commands.get() forItem:item];
    return bar;
}

} // namespace

@interface FcpCarrier : NSObject <NSApplicationDelegate>
@end

@implementation FcpCarrier

- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)application {
    (void)application;
    return YES;
}

@end

// Carries the extension: the system looks into an application's bundle when it has been opened, and registers
// the extensions that it finds. There is nothing to do here but to say so.
int main() {
    @autoreleasepool {
        auto* const application = [NSApplication sharedApplication];
        auto const carrier = RetainPtr<FcpCarrier*>::adopt([[FcpCarrier alloc] init]);
        [application setDelegate:carrier.get()];
        [application setMainMenu:makeMenu().get()];
        auto const window = makeWindow();
        [window.get() makeKeyAndOrderFront:nil];
        [application activateIgnoringOtherApps:YES];
        [application run];
    }
}
