#pragma once

#include "Platform/Cocoa/CocoaView.h"

namespace fcp {

// A read-only text in a frame that never grows with it.
class CocoaLabelView final : public CocoaView {
public:
    CocoaLabelView(LabelContent const& content, Rect const& frame);

    void setText(std::string const& text) override;
};

} // namespace fcp
