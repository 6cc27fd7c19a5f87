#pragma once

#include "Workbench/HostEditor/TimeToFrame.h"

#include <cstdint>
#include <optional>
#include <string>

namespace workbench {

// How frames are labelled, "HH:MM:SS:FF". At 30000/1001 frames in a second and its multiples the labels keep
// step with the clock: the first ones of each minute but every tenth are left out, and ';' says so. At all
// other rates each frame has the label after its predecessor's. Pure arithmetic, on any thread.

// How many labels a second has: 30 at 30000/1001.
[[nodiscard]] std::int64_t labelsPerSecond(FrameRate rate);

// How many digits the last field of a label has.
[[nodiscard]] int frameDigits(FrameRate rate);

[[nodiscard]] bool leavesOutLabels(FrameRate rate);

// The place of a frame's label among all labels, those that are left out included.
[[nodiscard]] std::int64_t labelOf(std::int64_t frame, FrameRate rate);

// The frame that carries the label; none when it is left out or below zero.
[[nodiscard]] std::optional<std::int64_t> frameOfLabel(std::int64_t label, FrameRate rate);

// The frame that carries the label, or the next one that a frame carries. `label` is not negative.
[[nodiscard]] std::int64_t frameAtOrAfter(std::int64_t label, FrameRate rate);

// The label in words, whether a frame carries it or not.
[[nodiscard]] std::string labelText(std::int64_t label, FrameRate rate);

[[nodiscard]] std::string timecode(std::int64_t frame, FrameRate rate);

// Frames per second as people write them: "25 fps", "29.97 fps".
[[nodiscard]] std::string rateText(FrameRate rate);

} // namespace workbench
