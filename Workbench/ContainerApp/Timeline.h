#pragma once

#include "Workbench/ContainerApp/ExportContent.h"
#include "Workbench/ContainerApp/MarkerColour.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

// A comment with its replies on the frames of its sequence. Its texts are valid UTF-8 in one line each and
// hold something to be seen.
struct TimelineMarker {
    std::int64_t frame = 0; // the sequence's first one is 0
    std::int64_t frames = 0; // 0 for a moment
    std::string title; // the comment's own text
    std::vector<std::string>
        remarks; // the comment and its replies, each behind its author: "Ana: Logo too small"
    std::optional<MarkerColour> colour;
    bool resolved = false;
};

// What formats that place markers on a timeline are made of.
struct Timeline {
    std::string title; // never empty
    FrameCount count;
    std::int64_t length = 1; // in frames; no marker reaches beyond it
    std::vector<TimelineMarker> markers; // in the order of their frames
};

// `content` has a frame count. Frames stay below 2^31, as many as other programs count. Throws OutputError
// for a rate that nobody's sequence has.
[[nodiscard]] Timeline timelineOf(ExportContent const& content);

// The markers of each frame together as one: for programs that keep one on a frame.
[[nodiscard]] std::vector<TimelineMarker> oneOnEachFrame(std::vector<TimelineMarker> markers);

// All remarks of a marker in one text.
[[nodiscard]] std::string joined(std::vector<std::string> const& remarks, std::string_view separator);

// `text` in one line: runs of white space and of what cannot be seen become one space.
[[nodiscard]] std::string oneLine(std::string const& text);

} // namespace workbench
