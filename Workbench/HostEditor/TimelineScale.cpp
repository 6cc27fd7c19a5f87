#include "Workbench/HostEditor/TimelineScale.h"

#include <algorithm>
#include <cmath>

namespace workbench {

void TimelineScale::setSequence(std::int64_t frames, FrameRate frameRate) {
    length = std::max<std::int64_t>(frames, 1);
    rate = frameRate;
    setMagnification(times);
    hidden = 0;
}

void TimelineScale::setRoom(double pixels) {
    auto const part = hidden / total();
    room = std::max(pixels, 1.0);
    setMagnification(times);
    scrollTo(part * total());
}

void TimelineScale::magnify(double factor, double place) {
    auto const part = (hidden + place) / total();
    setMagnification(times * factor);
    scrollTo(part * total() - place);
}

void TimelineScale::setMagnification(double wanted) {
    times = std::isfinite(wanted) ? std::clamp(wanted, 1.0, largest()) : 1.0;
    scrollTo(hidden);
}

void TimelineScale::scrollBy(double pixels) {
    scrollTo(hidden + pixels);
}

void TimelineScale::scrollTo(double pixels) {
    hidden = std::clamp(pixels, 0.0, total() - room);
}

bool TimelineScale::reveal(std::int64_t frame) {
    constexpr double lead = 0.1; // of the room, behind the frame as play goes
    auto const place = axis(0).positionOf(frame);
    if (place >= 0 && place <= room)
        return false;
    auto const before = hidden;
    scrollBy(place < 0 ? place - (1 - lead) * room : place - lead * room);
    return hidden != before;
}

TimeAxis TimelineScale::axis(double left) const {
    return {left - hidden, total(), length, rate};
}

double TimelineScale::largest() const {
    return std::max(MostPixels * static_cast<double>(length) / room, 1.0);
}

} // namespace workbench
