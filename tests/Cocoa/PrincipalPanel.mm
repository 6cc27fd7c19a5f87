#include "Cocoa/PrincipalPanel.h"

#include "Platform/Cocoa/CocoaUserInterface.h"
#include "Platform/Cocoa/CocoaView.h"
#include "Platform/Cocoa/Conversions.h"

#import <AppKit/AppKit.h>
#import <QuartzCore/QuartzCore.h>
#include <objc/runtime.h>

#include <utility>

using fcp::RetainPtr;
using fcp::test::PrincipalPanel;

// What a host makes of an extension that it found by name.
@protocol PrincipalClass <NSObject>
- (id)initWithNibName:(NSString*)nibName bundle:(NSBundle*)bundle;
- (id)initWithCoder:(NSCoder*)coder;
@end

namespace {

using AnyFunction = void (*)();

int alive = 0;
bool coderFails = false;
PrincipalPanel::SuperclassCalls calls;
IMP originalDealloc = nullptr;
IMP originalInitWithCoder = nullptr;

void countLoadView(id, SEL) {
    ++calls.loadView;
}

void countViewDidLoad(id, SEL) {
    ++calls.viewDidLoad;
}

void countDealloc(id self, SEL selector) {
    --alive;
    reinterpret_cast<void (*)(id, SEL)>(reinterpret_cast<AnyFunction>(originalDealloc))(self, selector);
}

id initWithCoder(id self, SEL selector, NSCoder* coder) {
    if (coderFails) {
        [self release];
        return nil;
    }
    return reinterpret_cast<id (*)(id, SEL, NSCoder*)>(reinterpret_cast<AnyFunction>(originalInitWithCoder))(
        self, selector, coder);
}

template <typename Function>
IMP replace(SEL selector, Function* function) {
    auto* const method = class_getInstanceMethod([NSViewController class], selector);
    return method_setImplementation(method, reinterpret_cast<IMP>(reinterpret_cast<AnyFunction>(function)));
}

// Once, when every category has been taken in.
void watchSuperclass() {
    if (originalDealloc)
        return;
    replace(@selector(loadView), countLoadView);
    replace(@selector(viewDidLoad), countViewDidLoad);
    originalDealloc = replace(@selector(dealloc), countDealloc);
    originalInitWithCoder = replace(@selector(initWithCoder:), initWithCoder);
}

NSCoder* makeCoder() {
    auto const plain = RetainPtr<NSViewController*>::adopt([[NSViewController alloc] init]);
    ++alive; // counted down with it
    auto* const data = [NSKeyedArchiver archivedDataWithRootObject:plain.get()];
    return [[[NSKeyedUnarchiver alloc] initForReadingWithData:data] autorelease];
}

fcp::Color readColor(NSColor* color) {
    return {[color redComponent], [color greenComponent], [color blueComponent], [color alphaComponent]};
}

std::optional<fcp::Color> layerColor(NSView* view) {
    auto* const color = reinterpret_cast<NSColor*>([[view layer] backgroundColor]);
    return color ? std::optional(readColor(color)) : std::nullopt;
}

fcp::test::LabelLook labelLook(NSTextField* label) {
    auto const traits = [[NSFontManager sharedFontManager] traitsOfFont:[label font]];
    return {.fontSize = [[label font] pointSize],
            .isBold = (traits & NSBoldFontMask) != 0,
            .color = readColor([label textColor]),
            .isBordered = [label isBordered] != NO,
            .isBezeled = [label isBezeled] != NO,
            .isEditable = [label isEditable] != NO,
            .isSelectable = [label isSelectable] != NO,
            .drawsBackground = [label drawsBackground] != NO,
            .wrapsByWords = [[label cell] lineBreakMode] == NSLineBreakByWordWrapping,
            .lines = static_cast<int>([label maximumNumberOfLines])};
}

fcp::test::ButtonLook buttonLook(NSButton* button) {
    return {.fontSize = [[button font] pointSize],
            .isRounded = [button bezelStyle] == NSRoundedBezelStyle,
            .isBordered = [button isBordered] != NO,
            .cellBackground = readColor([static_cast<NSButtonCell*>([button cell]) backgroundColor]),
            .message = sel_getName([button action])};
}

std::string textOf(NSView* view) {
    if ([view isKindOfClass:[NSTextField class]])
        return fcp::readString([static_cast<NSTextField*>(view) stringValue]).value();
    if ([view isKindOfClass:[NSButton class]])
        return fcp::readString([static_cast<NSButton*>(view) title]).value();
    return "";
}

fcp::test::NativeLook lookOf(NSView* view) {
    NSRect const frame = [view frame];
    fcp::test::NativeLook look;
    look.kind = class_getName([view class]);
    look.text = textOf(view);
    look.accessibleName = [view isAccessibilityElement]
                              ? fcp::readString([view accessibilityLabel]).value_or("")
                              : std::string();
    look.accessibleRole = fcp::readString([view accessibilityRole]).value_or("");
    look.frame = {frame.origin.x, frame.origin.y, frame.size.width, frame.size.height};
    look.mask = static_cast<unsigned>([view autoresizingMask]);
    look.isHidden = [view isHidden];
    look.layer = layerColor(view);
    if ([view isKindOfClass:[NSTextField class]])
        look.label = labelLook(static_cast<NSTextField*>(view));
    if ([view isKindOfClass:[NSButton class]])
        look.button = buttonLook(static_cast<NSButton*>(view));
    if ([view isKindOfClass:[NSProgressIndicator class]]) {
        auto* const indicator = static_cast<NSProgressIndicator*>(view);
        look.isSpinner = [indicator style] == NSProgressIndicatorSpinningStyle && [indicator isIndeterminate];
    }
    for (NSView* subview in [view subviews])
        look.subviews.push_back(lookOf(subview));
    return look;
}

template <typename Condition>
NSView* find(NSView* view, Condition const& condition) {
    if (condition(view))
        return view;
    for (NSView* subview in [view subviews]) {
        if (auto* const found = find(subview, condition))
            return found;
    }
    return nil;
}

NSButton* buttonIn(void* view) {
    return static_cast<NSButton*>(find(static_cast<NSView*>(view), [](NSView* candidate) {
        return [candidate isKindOfClass:[NSButton class]] != NO;
    }));
}

} // namespace

namespace fcp::test {

PrincipalPanel::PrincipalPanel(Way way) {
    @autoreleasepool {
        (void)[NSApplication sharedApplication];
        watchSuperclass();
        id<PrincipalClass> const made = [NSClassFromString(@"ViewController") alloc];
        ++alive;
        controller =
            way == Way::Coder ? [made initWithCoder:makeCoder()] : [made initWithNibName:nil bundle:nil];
    }
}

PrincipalPanel::~PrincipalPanel() {
    letGo();
    @autoreleasepool {
        [static_cast<NSWindow*>(window) close];
        [static_cast<NSWindow*>(window) release];
    }
}

void PrincipalPanel::letGo() {
    @autoreleasepool {
        [static_cast<id>(std::exchange(controller, nullptr)) release];
    }
}

bool PrincipalPanel::isMade() const {
    return controller != nullptr;
}

void PrincipalPanel::open() {
    @autoreleasepool {
        view = [static_cast<NSViewController*>(controller) view];
    }
}

void PrincipalPanel::show(int width, int height) {
    open();
    @autoreleasepool {
        auto* const shown = [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, width, height)
                                                        styleMask:NSBorderlessWindowMask
                                                          backing:NSBackingStoreBuffered
                                                            defer:NO];
        [shown setReleasedWhenClosed:NO];
        auto* const panelView = static_cast<NSView*>(view);
        [panelView setFrame:[[shown contentView] bounds]];
        [[shown contentView] addSubview:panelView];
        [shown orderFront:nil];
        window = shown;
    }
}

NativeLook lookOfNewView(ViewDescription const& description) {
    @autoreleasepool {
        CocoaUserInterface userInterface(nil);
        return lookOf(std::static_pointer_cast<CocoaView>(userInterface.makeView(description))->native());
    }
}

NativeLook PrincipalPanel::look() const {
    @autoreleasepool {
        return lookOf(static_cast<NSView*>(view));
    }
}

bool PrincipalPanel::hasText(std::string const& text) const {
    @autoreleasepool {
        return find(static_cast<NSView*>(view),
                    [&text](NSView* candidate) { return textOf(candidate) == text; }) != nil;
    }
}

bool PrincipalPanel::isHidden(std::string const& accessibleName) const {
    @autoreleasepool {
        auto* const named = find(static_cast<NSView*>(view), [&accessibleName](NSView* candidate) {
            return readString([candidate accessibilityLabel]) == accessibleName;
        });
        return named && [named isHidden];
    }
}

void PrincipalPanel::pressRetry() const {
    @autoreleasepool {
        auto* const button = buttonIn(view);
        [button sendAction:[button action] to:[button target]];
    }
}

bool PrincipalPanel::buttonHasTarget() const {
    @autoreleasepool {
        return [buttonIn(view) target] != nil;
    }
}

bool PrincipalPanel::buttonHasKeyboard() const {
    @autoreleasepool {
        auto* const button = buttonIn(view);
        return button && [[button window] firstResponder] == button;
    }
}

PrincipalPanel::SuperclassCalls PrincipalPanel::takeSuperclassCalls() {
    return std::exchange(calls, {});
}

void PrincipalPanel::draw(std::string const& file) const {
    @autoreleasepool {
        auto* const drawn = static_cast<NSView*>(view);
        [drawn display];
        [drawn lockFocus];
        auto const picture = RetainPtr<NSBitmapImageRep*>::adopt(
            [[NSBitmapImageRep alloc] initWithFocusedViewRect:[drawn bounds]]);
        [drawn unlockFocus];
        auto* const png = [picture.get() representationUsingType:NSPNGFileType properties:@{}];
        [png writeToFile:makeString(file).get() atomically:NO];
    }
}

int principalPanels() {
    return alive;
}

void failCoderInitialiser(bool fail) {
    coderFails = fail;
}

} // namespace fcp::test
