#include "Workbench/HostEditor/Timecode.h"

#include <algorithm>
#include <cstdio>

namespace workbench {

namespace {

constexpr std::int64_t SecondsPerMinute = 60;

// Labels left out at the start of a minute: 2 of 1800 at 30000/1001.
std::int64_t leftOutPerMinute(FrameRate rate) {
    return leavesOutLabels(rate) ? labelsPerSecond(rate) / 15 : 0;
}

} // namespace

std::int64_t labelsPerSecond(FrameRate rate) {
    auto const labels = (std::int64_t{rate.numerator} + rate.denominator / 2) / rate.denominator;
    return std::max<std::int64_t>(labels, 1);
}

int frameDigits(FrameRate rate) {
    return labelsPerSecond(rate) > 100 ? 3 : 2;
}

bool leavesOutLabels(FrameRate rate) {
    return std::int64_t{rate.numerator} * 1001 % (std::int64_t{rate.denominator} * 30000) == 0;
}

std::int64_t labelOf(std::int64_t frame, FrameRate rate) {
    auto const leftOut = leftOutPerMinute(rate);
    if (leftOut == 0)
        return frame;
    auto const minute = labelsPerSecond(rate) * SecondsPerMinute - leftOut; // in frames
    auto const tenMinutes = 10 * minute + leftOut;
    auto const rest = frame % tenMinutes;
    // The first of ten minutes is the longer one.
    auto const minutes = rest < leftOut ? 0 : (rest - leftOut) / minute;
    return frame + leftOut * (9 * (frame / tenMinutes) + minutes);
}

std::optional<std::int64_t> frameOfLabel(std::int64_t label, FrameRate rate) {
    if (label < 0)
        return {};
    auto const labelsPerMinute = labelsPerSecond(rate) * SecondsPerMinute;
    auto const minutes = label / labelsPerMinute;
    auto const frame = label - leftOutPerMinute(rate) * (minutes - minutes / 10);
    return labelOf(frame, rate) == label ? std::optional{frame} : std::nullopt;
}

std::int64_t frameAtOrAfter(std::int64_t label, FrameRate rate) {
    for (;; ++label)
        if (auto const frame = frameOfLabel(label, rate))
            return *frame;
}

std::string labelText(std::int64_t label, FrameRate rate) {
    auto const labels = labelsPerSecond(rate);
    auto const seconds = label / labels;
    char text[48];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d%c%0*d", static_cast<int>(seconds / 3600),
                  static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60),
                  leavesOutLabels(rate) ? ';' : ':', frameDigits(rate), static_cast<int>(label % labels));
    return text;
}

std::string timecode(std::int64_t frame, FrameRate rate) {
    return labelText(labelOf(frame, rate), rate);
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
