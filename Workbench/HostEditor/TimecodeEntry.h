#pragma once

#include "Workbench/HostEditor/TimeToFrame.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace workbench {

// Where in a sequence a timecode is typed.
struct TimecodeContext {
    FrameRate rate;
    std::int64_t length = 0; // of the sequence, in frames
    std::int64_t frame = 0; // that a relative entry counts from
};

// What a user means by a typed timecode: the frame, or what is wrong in one line. "1:02:03:04", with ':',
// ';',
// '.' or ',' between the fields, or "1020304" without; fields that are left out are zero and lie at the
// front, so that "12" is frame 12 of the first second. A '+' or '-' in front makes it relative: hours,
// minutes and seconds move the label by as much, frames are counted.
[[nodiscard]] std::variant<std::int64_t, std::string> readTimecode(std::string_view typed,
                                                                   TimecodeContext const& context);

} // namespace workbench
