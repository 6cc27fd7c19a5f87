#pragma once

#include "Platform/Cocoa/RetainPtr.h"
#include "Ports/View.h"

#import <AppKit/AppKit.h>

#include <vector>

namespace fcp {

// A view over one NSView, which keeps frame, mask and visibility itself. Main thread only.
class CocoaView : public View {
public:
    // Shares the ownership of `nativeView`.
    explicit CocoaView(NSView* nativeView);

    CocoaView(CocoaView const&) = delete;
    CocoaView& operator=(CocoaView const&) = delete;

    [[nodiscard]] Rect bounds() const override;

    // `subview` is a CocoaView, like every view of this back end.
    void addSubview(std::shared_ptr<View> subview) override;

    void show() override;
    void hide() override;
    void setText(std::string const& text) override;
    [[nodiscard]] bool isInWindow() const override;
    void makeFirstResponder(View* responder) override;

    // Borrowed.
    [[nodiscard]] NSView* native() const { return shown.get(); }

private:
    RetainPtr<NSView*> const shown;
    std::vector<std::shared_ptr<CocoaView>> subviews;
};

} // namespace fcp
