#pragma once

#include "Platform/Cocoa/CocoaView.h"

namespace fcp {

// A push button that sends its message to the panel's view controller.
class CocoaButtonView final : public CocoaView {
public:
    // `target` is borrowed, until this view goes.
    CocoaButtonView(ButtonContent const& content, Rect const& frame, NSViewController* target);

    // The host may keep the native button, which has nobody to turn to then.
    ~CocoaButtonView() override;
};

} // namespace fcp
