#pragma once

#include "FcpExtension/ProExtensionHost.h"

#include <cstdint>
#include <optional>

namespace workbench {

// Frames per second as an exact fraction; both parts are positive.
struct FrameRate {
    int numerator = 25;
    int denominator = 1;

    friend bool operator==(FrameRate const&, FrameRate const&) = default;
};

// The frame of a sequence of `length` frames that contains `time`, clamped to its two ends. Empty when the
// sequence has no frames or the time is no number of seconds (invalid, indefinite or infinite).
[[nodiscard]] std::optional<std::int64_t> frameAt(fcp::CMTime const& time, FrameRate rate,
                                                  std::int64_t length);

// The moment at which `frame` begins, exact. Pure arithmetic, like everything here: callable on any thread.
[[nodiscard]] fcp::CMTime timeOfFrame(std::int64_t frame, FrameRate rate);

// The media time that a page or a container means by `seconds`; invalid when they are not finite.
[[nodiscard]] fcp::CMTime timeOfSeconds(double seconds);

} // namespace workbench
