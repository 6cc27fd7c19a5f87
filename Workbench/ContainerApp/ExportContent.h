#pragma once

#include "Workbench/ContainerApp/Comment.h"
#include "Workbench/ContainerApp/Timecode.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

// What an export is made of, whatever its format.
struct ExportContent {
    std::string title; // of the sequence; may be empty
    std::optional<FrameCount> count; // none when nobody knows the rate
    std::int64_t durationFrames = 0; // of the sequence; 0 when nobody knows
    std::vector<Comment> comments; // each reply behind its parent
};

} // namespace workbench
