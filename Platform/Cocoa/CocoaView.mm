#include "Platform/Cocoa/CocoaView.h"

#include <utility>

namespace fcp {

CocoaView::CocoaView(NSView* nativeView)
    : shown(RetainPtr<NSView*>::retain(nativeView)) {}

Rect CocoaView::bounds() const {
    NSRect const bounds = [native() bounds];
    return {bounds.origin.x, bounds.origin.y, bounds.size.width, bounds.size.height};
}

void CocoaView::addSubview(std::shared_ptr<View> subview) {
    auto view = std::static_pointer_cast<CocoaView>(std::move(subview));
    [native() addSubview:view->native()];
    subviews.push_back(std::move(view));
}

void CocoaView::show() {
    [native() setHidden:NO];
}

void CocoaView::hide() {
    [native() setHidden:YES];
}

void CocoaView::setText(std::string const&) {}

bool CocoaView::isInWindow() const {
    return [native() window] != nil;
}

void CocoaView::makeFirstResponder(View* responder) {
    NSView* const view = responder ? static_cast<CocoaView*>(responder)->native() : nil;
    [[native() window] makeFirstResponder:view];
}

} // namespace fcp
