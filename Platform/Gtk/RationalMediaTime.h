#pragma once

#include "Ports/MediaTime.h"

namespace fcp {

// Media times where there is no system library for them. Any value of any field is safe.
class RationalMediaTime final : public MediaTime {
public:
    // A time without a timescale is no number either: nothing says what its value counts.
    [[nodiscard]] double seconds(CMTime time) const override;

    // Between two ticks the value is cut towards zero, as is reported of the Mac. Seconds beyond the range of
    // the value give its end, and never a coarser timescale: whoever asks for 600 is promised 600. Seconds
    // that are no number, or a timescale below 1, give an invalid time; infinite ones an infinite time.
    [[nodiscard]] CMTime makeWithSeconds(double seconds, std::int32_t preferredTimescale) const override;
};

} // namespace fcp
