#include "Workbench/HostEditor/TimeAxis.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <utility>

namespace workbench {

double TimeAxis::positionOf(std::int64_t frame) const {
    return left + width * static_cast<double>(frame) / static_cast<double>(std::max<std::int64_t>(length, 1));
}

std::int64_t TimeAxis::frameUnder(double position) const {
    auto const last = static_cast<double>(std::max<std::int64_t>(length, 1) - 1);
    auto const frame = std::floor((position - left) * static_cast<double>(length) / std::max(width, 1.0));
    return static_cast<std::int64_t>(std::clamp(frame, 0.0, last));
}

std::int64_t TimeAxis::labelStep(double room) const {
    static constexpr std::array<std::int64_t, 16> seconds = {1,   2,   5,   10,   15,   30,   60,    120,
                                                             300, 600, 900, 1800, 3600, 7200, 18000, 36000};
    auto const least = room * static_cast<double>(length) / std::max(width, 1.0);
    auto const perSecond =
        std::max<std::int64_t>((rate.numerator + rate.denominator / 2) / rate.denominator, 1);
    for (auto const frames : {std::int64_t{1}, std::int64_t{2}, std::int64_t{5}, std::int64_t{10}})
        if (static_cast<double>(frames) >= least && frames < perSecond)
            return frames;
    for (auto const step : seconds)
        if (static_cast<double>(step * perSecond) >= least)
            return step * perSecond;
    return std::max<std::int64_t>(length, 1);
}

std::vector<PinGroup> groupPins(std::vector<Pin> const& pins, TimeAxis const& axis, double reach) {
    std::vector<std::size_t> order(pins.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::vector<std::int64_t> frames;
    std::ranges::transform(pins, std::back_inserter(frames),
                           [&](Pin const& pin) { return frameOfSeconds(pin.start, axis); });
    std::ranges::sort(order, {}, [&](auto index) { return std::pair{frames[index], index}; });
    std::vector<PinGroup> groups;
    for (auto const index : order) {
        auto const position = axis.positionOf(frames[index]);
        if (groups.empty() || position - groups.back().position >= reach)
            groups.push_back({frames[index], position, {}});
        groups.back().members.push_back(index);
    }
    return groups;
}

std::optional<std::int64_t> nextPin(std::vector<Pin> const& pins, TimeAxis const& axis, std::int64_t frame,
                                    Direction direction) {
    std::optional<std::int64_t> nearest;
    for (auto const& pin : pins) {
        auto const place = frameOfSeconds(pin.start, axis);
        if (direction == Direction::On && place > frame)
            nearest = std::min(place, nearest.value_or(place));
        if (direction == Direction::Back && place < frame)
            nearest = std::max(place, nearest.value_or(place));
    }
    return nearest;
}

std::int64_t frameOfSeconds(double seconds, TimeAxis const& axis) {
    return frameAt(timeOfSeconds(seconds), axis.rate, axis.length).value_or(0);
}

} // namespace workbench
