#include "Platform/Gtk/Autoresizing.h"

namespace fcp {

Span autoresized(Span const& span, FlexibleParts const& flexible, double change) {
    auto const parts = int{flexible.marginBefore} + int{flexible.length} + int{flexible.marginAfter};
    if (parts == 0)
        return span;
    auto const share = change / parts;
    return {span.origin + (flexible.marginBefore ? share : 0), span.length + (flexible.length ? share : 0)};
}

Rect autoresized(Rect const& frame, Autoresizing mask, double widthChange, double heightChange) {
    auto const horizontal = autoresized({frame.x, frame.width},
                                        {includes(mask, Autoresizing::FlexibleLeftMargin),
                                         includes(mask, Autoresizing::FlexibleWidth),
                                         includes(mask, Autoresizing::FlexibleRightMargin)},
                                        widthChange);
    auto const vertical = autoresized({frame.y, frame.height},
                                      {includes(mask, Autoresizing::FlexibleBottomMargin),
                                       includes(mask, Autoresizing::FlexibleHeight),
                                       includes(mask, Autoresizing::FlexibleTopMargin)},
                                      heightChange);
    return {horizontal.origin, vertical.origin, horizontal.length, vertical.length};
}

} // namespace fcp
