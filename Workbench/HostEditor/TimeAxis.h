#pragma once

#include "Workbench/HostEditor/Pin.h"
#include "Workbench/HostEditor/Shuttle.h"
#include "Workbench/HostEditor/TimeToFrame.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace workbench {

// Where a sequence's frames lie on a line of pixels: the whole of it between `left` and `left + width`.
struct TimeAxis {
    double left = 0;
    double width = 1;
    std::int64_t length = 1; // frames
    FrameRate rate;

    // Where the frame begins.
    [[nodiscard]] double positionOf(std::int64_t frame) const;

    // The frame under a pixel, clamped to the sequence.
    [[nodiscard]] std::int64_t frameUnder(double position) const;

    // The frames between two labels of the ruler, so that labels of `room` pixels do not touch.
    [[nodiscard]] std::int64_t labelStep(double room) const;
};

// Pins that lie so close together that one hand can only meet them together.
struct PinGroup {
    std::int64_t frame = 0; // of the first
    double position = 0;
    std::vector<std::size_t> members; // indices, in the order of their times
};

// Groups from left to right, at least `reach` pixels apart.
[[nodiscard]] std::vector<PinGroup> groupPins(std::vector<Pin> const& pins, TimeAxis const& axis,
                                              double reach);

// The frame of the nearest pin after `frame`, or before it; none when there is none.
[[nodiscard]] std::optional<std::int64_t> nextPin(std::vector<Pin> const& pins, TimeAxis const& axis,
                                                  std::int64_t frame, Direction direction);

// The frame that a pin's time in seconds falls on, clamped to the sequence; the first when it is no number.
[[nodiscard]] std::int64_t frameOfSeconds(double seconds, TimeAxis const& axis);

} // namespace workbench
