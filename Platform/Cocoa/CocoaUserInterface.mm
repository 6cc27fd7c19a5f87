#include "Platform/Cocoa/CocoaUserInterface.h"

#include "Platform/Cocoa/CocoaButtonView.h"
#include "Platform/Cocoa/CocoaLabelView.h"
#include "Platform/Cocoa/Conversions.h"
#include "Platform/Cocoa/Drawing.h"

#import <QuartzCore/QuartzCore.h>

namespace fcp {

namespace {

using Made = std::shared_ptr<CocoaView>;

// Makes the native view of each kind of content.
class ContentMaker {
public:
    ContentMaker(Rect const& viewFrame, NSViewController* buttonTarget)
        : frame(viewFrame)
        , target(buttonTarget) {}

    Made operator()(std::monostate) const {
        auto const view = RetainPtr<NSView*>::adopt([[NSView alloc] initWithFrame:makeRect(frame)]);
        [view.get() setAccessibilityRole:NSAccessibilityGroupRole];
        return std::make_shared<CocoaView>(view.get());
    }

    Made operator()(LabelContent const& label) const {
        return std::make_shared<CocoaLabelView>(label, frame);
    }

    Made operator()(SpinnerContent const&) const {
        auto const spinner = RetainPtr<NSProgressIndicator*>::adopt(
            [[NSProgressIndicator alloc] initWithFrame:makeRect(frame)]);
        [spinner.get() setStyle:NSProgressIndicatorStyleSpinning];
        [spinner.get() setIndeterminate:YES];
        [spinner.get() startAnimation:nil];
        return std::make_shared<CocoaView>(spinner.get());
    }

    Made operator()(ButtonContent const& button) const {
        return std::make_shared<CocoaButtonView>(button, frame, target);
    }

private:
    Rect const& frame;
    NSViewController* const target;
};

void setLayerBackground(NSView* view, Color const& color) {
    [view setWantsLayer:YES];
    [[view layer] setBackgroundColor:[makeColor(color) CGColor]];
}

// What is an alert needs no announcement of its own here: the focus goes to a button in it, which is spoken
// with the name of its group.
void setAccessibleName(NSView* view, std::string const& name) {
    [view setAccessibilityElement:YES];
    [view setAccessibilityLabel:makeString(name).get()];
}

} // namespace

std::shared_ptr<View> CocoaUserInterface::makeView(ViewDescription const& description) {
    auto view = std::visit(ContentMaker(description.frame, controller), description.content);
    auto* const native = view->native();
    [native setAutoresizingMask:makeMask(description.autoresizing)];
    if (description.layerBackground)
        setLayerBackground(native, *description.layerBackground);
    if (!description.accessibleName.empty())
        setAccessibleName(native, description.accessibleName);
    if (description.hidden)
        view->hide();
    return view;
}

void CocoaUserInterface::installView(std::shared_ptr<View> view) {
    [controller setView:std::static_pointer_cast<CocoaView>(view)->native()];
}

} // namespace fcp
