#pragma once

#include "Ports/View.h"

namespace fcp {

// One axis of a frame, in points.
struct Span {
    double origin = 0;
    double length = 0;
};

// Which parts of one axis follow when the superview's length changes.
struct FlexibleParts {
    bool marginBefore = false;
    bool length = false;
    bool marginAfter = false;
};

// Shares the superview's change evenly among the flexible parts, as AppKit documents; with none of them the
// span stays. Lengths may become negative: only so does the way back end where it began.
[[nodiscard]] Span autoresized(Span const& span, FlexibleParts const& flexible, double change);

// The same for both axes of a frame.
[[nodiscard]] Rect autoresized(Rect const& frame, Autoresizing mask, double widthChange, double heightChange);

} // namespace fcp
