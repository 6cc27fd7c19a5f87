#pragma once

#include "Ports/MediaTime.h"

namespace fcp {

// Media times where there is no system library for them.
class RationalMediaTime final : public MediaTime {
public:
    // Any value of any field is safe. A time without a timescale is no number either: nothing says what its
    // value counts.
    [[nodiscard]] double seconds(CMTime time) const override;

    // Between two ticks the value is cut towards zero, as is reported of the Mac. A timescale below 1 gives
    // an invalid time.
    [[nodiscard]] CMTime makeWithSeconds(double seconds, std::int32_t preferredTimescale) const override;
};

} // namespace fcp
