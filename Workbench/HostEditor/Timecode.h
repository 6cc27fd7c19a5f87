#pragma once

#include "Workbench/HostEditor/TimeToFrame.h"

#include <cstdint>
#include <string>

namespace workbench {

// "HH:MM:SS:FF", counting every frame: at 30000/1001 it runs slower than the clock, and no label is left out.
[[nodiscard]] std::string timecode(std::int64_t frame, FrameRate rate);

// Frames per second as people write them: "25 fps", "29.97 fps".
[[nodiscard]] std::string rateText(FrameRate rate);

} // namespace workbench
