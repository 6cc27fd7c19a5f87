#include "Platform/Cocoa/CocoaButtonView.h"

#include "Platform/Cocoa/Conversions.h"
#include "Platform/Cocoa/Drawing.h"

namespace fcp {

namespace {

RetainPtr<NSButton*> makeButton(ButtonContent const& content, Rect const& frame, NSViewController* target) {
    auto pushed = RetainPtr<NSButton*>::adopt([[NSButton alloc] initWithFrame:makeRect(frame)]);
    auto* const button = pushed.get();
    [button setTitle:makeString(content.title).get()];
    [button setBezelStyle:NSBezelStyleRounded];
    [button setFont:makeFont(content.font)];
    [button setTarget:target];
    [button setAction:NSSelectorFromString(makeString(content.selector).get())];
    [button setBordered:YES];
    id const cell = [button cell];
    if ([cell isKindOfClass:[NSButtonCell class]])
        [static_cast<NSButtonCell*>(cell) setBackgroundColor:makeColor(content.cellBackground)];
    return pushed;
}

} // namespace

CocoaButtonView::CocoaButtonView(ButtonContent const& content, Rect const& frame, NSViewController* target)
    : CocoaView(makeButton(content, frame, target).get()) {}

CocoaButtonView::~CocoaButtonView() {
    [static_cast<NSButton*>(native()) setTarget:nil];
}

} // namespace fcp
