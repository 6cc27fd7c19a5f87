#pragma once

#include "Workbench/HostEditor/TimeToFrame.h"

#include <glibmm/bytes.h>

namespace workbench {

struct PixelSize {
    int width = 0;
    int height = 0;

    friend bool operator==(PixelSize, PixelSize) = default;
};

// A picture ready for the screen: blue, green, red, opaque; rows without gaps.
struct Picture {
    Glib::RefPtr<Glib::Bytes const> pixels; // null: there is no picture
    PixelSize size;
    double displayAspect = 1; // width to height as it is meant to be seen

    explicit operator bool() const { return static_cast<bool>(pixels); }
};

// The largest size of this shape inside `area`.
[[nodiscard]] PixelSize fitted(double displayAspect, PixelSize area);

// The size to convert a picture to: inside `area`, not above `heightLimit`, both sides even.
[[nodiscard]] PixelSize previewSize(double displayAspect, PixelSize area, int heightLimit);

// How high a picture may be while it is playing, so that two cores keep up.
[[nodiscard]] int playingHeightLimit(FrameRate rate);

} // namespace workbench
