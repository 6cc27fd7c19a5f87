#pragma once

#include "Ports/MediaTime.h"

namespace fcp {

// Media times by the system's own arithmetic.
class CocoaMediaTime final : public MediaTime {
public:
    [[nodiscard]] double seconds(CMTime time) const override;
    [[nodiscard]] CMTime makeWithSeconds(double seconds, std::int32_t preferredTimescale) const override;
};

} // namespace fcp
