#pragma once

#include "Workbench/ContainerApp/Timecode.h"

#include <cstdint>
#include <optional>
#include <string>

namespace workbench {

// A sequence as the editor describes it.
struct HostSequence {
    std::string key; // never empty
    std::string name;
    std::string uri;
    std::optional<FrameRate> rate;
    std::int64_t durationFrames = 0;
    std::int64_t firstFrame = 0;
    bool dropFrame = false;

    friend bool operator==(HostSequence const&, HostSequence const&) = default;
};

// The list that comments belong to when nobody names one.
inline constexpr char const* defaultSequence = "default";

} // namespace workbench
