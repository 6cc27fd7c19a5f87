#include "Workbench/HostEditor/EveryFrame.h"

#include <gtest/gtest.h>

#include <cmath>

namespace workbench {

void expectEveryFrameFound(FrameRate rate, int hours) {
    constexpr int units = 600;
    auto const length = std::int64_t{hours} * 3600 * rate.numerator / rate.denominator;
    std::int64_t wrong = 0;
    for (std::int64_t frame = 0; frame < length; ++frame) {
        auto const seconds = static_cast<double>(frame) * rate.denominator / rate.numerator;
        for (auto const value : {std::llround(seconds * units), static_cast<long long>(seconds * units)}) {
            fcp::CMTime const time{.value = value, .timescale = units, .flags = fcp::CMTime::Valid};
            wrong += frameAt(time, rate, length) != frame;
        }
    }
    EXPECT_EQ(wrong, 0) << "of " << length << " frames at " << rate.numerator << "/" << rate.denominator;
}

} // namespace workbench
