#include "Workbench/ContainerApp/Timecode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <numeric>

namespace workbench {

namespace {

constexpr double editorTick = 1.0 / 600;

// What a second's labels count to: 24 at 24000/1001.
std::int64_t labelsPerSecond(FrameRate rate) {
    auto const labels = (2 * rate.numerator + rate.denominator) / (2 * rate.denominator);
    return labels > 0 ? labels : 1;
}

bool drops(FrameCount const& count) {
    return count.dropFrame && canDropFrames(count.rate);
}

// Labels left out at the start of each minute but every tenth.
std::int64_t droppedPerMinute(FrameRate rate) {
    return labelsPerSecond(rate) / 15;
}

std::int64_t withDroppedLabels(std::int64_t frame, FrameRate rate) {
    auto const dropped = droppedPerMinute(rate);
    auto const minute = labelsPerSecond(rate) * 60 - dropped;
    auto const tenMinutes = minute * 10 + dropped;
    auto const rest = frame % tenMinutes;
    auto const minutes = rest < dropped ? 0 : (rest - dropped) / minute;
    return frame + dropped * (9 * (frame / tenMinutes) + minutes);
}

std::int64_t framesPerDay(FrameCount const& count) {
    auto const labels = labelsPerSecond(count.rate) * 24 * 60 * 60;
    return drops(count) ? labels - droppedPerMinute(count.rate) * 24 * 54 : labels;
}

// Four numbers, parted by ':', ';' or '.', and nothing else.
std::optional<std::array<std::int64_t, 4>> readFields(std::string_view label) {
    auto fields = std::array<std::int64_t, 4>{};
    auto const* at = label.data();
    auto const* const end = at + label.size();
    for (std::size_t field = 0; field < fields.size(); ++field) {
        if (field > 0) {
            if (at == end || std::string_view{":;."}.find(*at) == std::string_view::npos)
                return {};
            ++at;
        }
        auto const [next, error] = std::from_chars(at, end, fields[field]);
        if (error != std::errc{} || next - at > 3 || fields[field] < 0)
            return {};
        at = next;
    }
    return at == end ? std::optional{fields} : std::nullopt;
}

} // namespace

std::int64_t frameAt(double seconds, FrameRate rate) {
    auto const frame = std::floor((seconds + editorTick) * static_cast<double>(rate.numerator) /
                                  static_cast<double>(rate.denominator));
    return frame > 0 ? static_cast<std::int64_t>(std::min(frame, 9.0e15)) : 0;
}

double secondsOf(std::int64_t frame, FrameRate rate) {
    return static_cast<double>(frame) * static_cast<double>(rate.denominator) /
           static_cast<double>(rate.numerator);
}

std::string timecode(std::int64_t frame, FrameCount const& count) {
    auto const day = framesPerDay(count);
    auto number = ((frame + count.firstFrame) % day + day) % day;
    if (drops(count))
        number = withDroppedLabels(number, count.rate);
    auto const labels = labelsPerSecond(count.rate);
    auto const seconds = static_cast<int>(number / labels);
    char text[48];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d%c%0*d", seconds / 3600, seconds / 60 % 60, seconds % 60,
                  drops(count) ? ';' : ':', labels > 100 ? 3 : 2, static_cast<int>(number % labels));
    return text;
}

std::string clockTime(std::int64_t frame, FrameRate rate) {
    auto const time = frame * rate.denominator;
    auto const rest = time % rate.numerator * 1000;
    auto const milliseconds = time / rate.numerator * 1000 + (rest + rate.numerator - 1) / rate.numerator;
    auto const seconds = milliseconds / 1000;
    char text[64];
    std::snprintf(text, sizeof text, "%02lld:%02d:%02d.%03d", static_cast<long long>(seconds / 3600),
                  static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60),
                  static_cast<int>(milliseconds % 1000));
    return text;
}

std::optional<std::int64_t> frameOfLabel(std::string_view label, FrameCount const& count) {
    auto const fields = readFields(label);
    auto const labels = labelsPerSecond(count.rate);
    if (!fields)
        return {};
    auto const [hours, minutes, seconds, frames] = *fields;
    if (hours > 23 || minutes > 59 || seconds > 59 || frames >= labels)
        return {};
    auto const number = ((hours * 60 + minutes) * 60 + seconds) * labels + frames;
    if (!drops(count))
        return number;
    auto const dropped = droppedPerMinute(count.rate);
    if (minutes % 10 != 0 && seconds == 0 && frames < dropped)
        return {};
    auto const minutesInAll = hours * 60 + minutes;
    return number - dropped * (minutesInAll - minutesInAll / 10);
}

bool canDropFrames(FrameRate rate) {
    return rate.denominator > 0 && rate.numerator * 1001 % (rate.denominator * 30000) == 0;
}

std::optional<FrameRate> rateFromRounded(double framesPerSecond) {
    if (!(framesPerSecond >= 1) || framesPerSecond > 1000)
        return {};
    auto const whole = std::round(framesPerSecond);
    // 23.98, 29.97, 47.95, 59.94 and 119.88 stand for a whole rate slowed by 1001/1000.
    if (std::abs(framesPerSecond - whole * 1000 / 1001) < 0.006 && framesPerSecond < whole)
        return FrameRate{static_cast<std::int64_t>(whole) * 1000, 1001};
    auto const hundredths = std::llround(framesPerSecond * 100);
    auto const common = std::gcd(hundredths, 100LL);
    return FrameRate{hundredths / common, 100 / common};
}

} // namespace workbench
