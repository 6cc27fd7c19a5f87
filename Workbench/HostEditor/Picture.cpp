#include "Workbench/HostEditor/Picture.h"

#include <algorithm>
#include <cmath>

namespace workbench {

PixelSize fitted(double displayAspect, PixelSize area) {
    auto const width = static_cast<int>(std::lround(area.height * displayAspect));
    if (width <= area.width)
        return {width, area.height};
    return {area.width, static_cast<int>(std::lround(area.width / displayAspect))};
}

PixelSize previewSize(double displayAspect, PixelSize area, int heightLimit) {
    auto const inside = fitted(displayAspect, area);
    auto const height = std::max(std::min(inside.height, heightLimit) & ~1, 2);
    auto const width = static_cast<int>(std::lround(height * displayAspect / 2)) * 2;
    return {std::max(width, 2), height};
}

int playingHeightLimit(FrameRate rate) {
    constexpr int ordinary = 540;
    constexpr int fast = 360;
    constexpr int ordinaryRate = 30;
    return rate.numerator > ordinaryRate * rate.denominator ? fast : ordinary;
}

} // namespace workbench
