#include "Platform/Cocoa/Drawing.h"

namespace fcp {

namespace {

NSFontWeight makeWeight(FontWeight weight) {
    switch (weight) {
    case FontWeight::Regular:
        return NSFontWeightRegular;
    case FontWeight::Semibold:
        return NSFontWeightSemibold;
    case FontWeight::Bold:
        return NSFontWeightBold;
    }
    return NSFontWeightRegular;
}

} // namespace

NSRect makeRect(Rect const& rect) {
    return NSMakeRect(rect.x, rect.y, rect.width, rect.height);
}

NSAutoresizingMaskOptions makeMask(Autoresizing mask) {
    return static_cast<NSAutoresizingMaskOptions>(mask); // the values are the system's own
}

NSColor* makeColor(Color const& color) {
    return [NSColor colorWithRed:color.red green:color.green blue:color.blue alpha:color.alpha];
}

NSFont* makeFont(Font const& font) {
    return [NSFont systemFontOfSize:font.size weight:makeWeight(font.weight)];
}

} // namespace fcp
