#include "Workbench/HostEditor/Timecode.h"

#include <cstdio>

namespace workbench {

std::string timecode(std::int64_t frame, FrameRate rate) {
    auto const perSecond = (rate.numerator + rate.denominator / 2) / rate.denominator;
    auto const labels = perSecond > 0 ? perSecond : 1;
    auto const seconds = frame / labels;
    char text[40];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d:%0*d", static_cast<int>(seconds / 3600),
                  static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60), labels > 100 ? 3 : 2,
                  static_cast<int>(frame % labels));
    return text;
}

std::string rateText(FrameRate rate) {
    auto const hundredths = (200LL * rate.numerator + rate.denominator) / (2LL * rate.denominator);
    char text[40];
    if (hundredths % 100 == 0)
        std::snprintf(text, sizeof text, "%lld fps", hundredths / 100);
    else
        std::snprintf(text, sizeof text, "%lld.%02lld fps", hundredths / 100, hundredths % 100);
    return text;
}

} // namespace workbench
