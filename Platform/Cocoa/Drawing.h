#pragma once

#include "Ports/View.h"

#import <AppKit/AppKit.h>

namespace fcp {

// What views are described with, in the system's terms. Main thread only; the objects are autoreleased.

[[nodiscard]] NSRect makeRect(Rect const& rect);
[[nodiscard]] NSAutoresizingMaskOptions makeMask(Autoresizing mask);
[[nodiscard]] NSColor* makeColor(Color const& color);
[[nodiscard]] NSFont* makeFont(Font const& font);

} // namespace fcp
