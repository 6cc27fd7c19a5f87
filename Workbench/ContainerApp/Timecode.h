#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace workbench {

// Frames per second as an exact fraction; both parts are positive.
struct FrameRate {
    std::int64_t numerator = 25;
    std::int64_t denominator = 1;

    friend bool operator==(FrameRate const&, FrameRate const&) = default;
};

// How a sequence counts: its rate, the frame number of its first frame, and whether its labels leave out the
// numbers that keep 29.97 and 59.94 in step with the clock.
struct FrameCount {
    FrameRate rate;
    std::int64_t firstFrame = 0;
    bool dropFrame = false;
};

// The frame of the sequence that contains `seconds`, the first one being 0. It is the frame that a seek to
// the same time shows: a time may have been rounded down by up to one tick of the editor's 600 in a second.
[[nodiscard]] std::int64_t frameAt(double seconds, FrameRate rate);

// When frame `frame` of the sequence begins: `frameAt` gives the frame back.
[[nodiscard]] double secondsOf(std::int64_t frame, FrameRate rate);

// The label of frame `frame` of the sequence: "HH:MM:SS:FF", with ";FF" where labels are dropped. Runs over
// at 24 h.
[[nodiscard]] std::string timecode(std::int64_t frame, FrameCount const& count);

// The first millisecond that lies in frame `frame`, which is not negative, as a clock shows it:
// "HH:MM:SS.mmm". `frame` times the rate's denominator times a thousand stays below 2^63.
[[nodiscard]] std::string clockTime(std::int64_t frame, FrameRate rate);

// The frame number that a label stands for, counted from zero hours. None for text that is no label at this
// rate.
[[nodiscard]] std::optional<std::int64_t> frameOfLabel(std::string_view label, FrameCount const& count);

// True where dropping labels is defined: at multiples of 30000/1001.
[[nodiscard]] bool canDropFrames(FrameRate rate);

// The rate behind a number that was rounded to two decimals. None below 1 and above 1000.
[[nodiscard]] std::optional<FrameRate> rateFromRounded(double framesPerSecond);

} // namespace workbench
