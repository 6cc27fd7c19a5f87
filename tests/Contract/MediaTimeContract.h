#pragma once

#include "Doubles/FakeHost.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace fcp::test {

inline constexpr auto infinity = std::numeric_limits<double>::infinity();
inline constexpr auto notANumber = std::numeric_limits<double>::quiet_NaN();

[[nodiscard]] inline CMTime flagged(std::uint32_t flags) {
    return {.value = 5, .timescale = 1, .flags = flags};
}

template <typename Arithmetic>
class MediaTimeContract : public testing::Test {
protected:
    Arithmetic const arithmetic{};
};

TYPED_TEST_SUITE_P(MediaTimeContract);

TYPED_TEST_P(MediaTimeContract, SecondsAreTheValueByTheTimescale) {
    EXPECT_DOUBLE_EQ(this->arithmetic.seconds(mediaTime(1001, 30000)), 1001.0 / 30000.0);
    EXPECT_DOUBLE_EQ(this->arithmetic.seconds(mediaTime(-3, 2)), -1.5);
    EXPECT_DOUBLE_EQ(this->arithmetic.seconds(mediaTime(0, 600)), 0.0);
}

TYPED_TEST_P(MediaTimeContract, AnInvalidTimeIsNoNumber) {
    EXPECT_TRUE(std::isnan(this->arithmetic.seconds(CMTime{})));
    EXPECT_TRUE(std::isnan(this->arithmetic.seconds(flagged(0))));
    EXPECT_TRUE(std::isnan(this->arithmetic.seconds(flagged(CMTime::PositiveInfinity))));
}

TYPED_TEST_P(MediaTimeContract, InfiniteTimesAreInfinities) {
    EXPECT_EQ(this->arithmetic.seconds(flagged(CMTime::Valid | CMTime::PositiveInfinity)), infinity);
    EXPECT_EQ(this->arithmetic.seconds(flagged(CMTime::Valid | CMTime::NegativeInfinity)), -infinity);
}

TYPED_TEST_P(MediaTimeContract, ATimeMadeOfSecondsIsThatManyTicks) {
    auto const time = this->arithmetic.makeWithSeconds(12.5, 600);
    EXPECT_EQ(time.value, 7500);
    EXPECT_EQ(time.timescale, 600);
    EXPECT_EQ(time.flags, CMTime::Valid);
    EXPECT_EQ(time.epoch, 0);
}

TYPED_TEST_P(MediaTimeContract, TheTimescaleIsKeptAsFarAsTheValueReaches) {
    constexpr double last = 9223372036854774784.0 / 600;
    for (double const seconds : {0.0, -1.0, 1e-300, 1e16, last, -last})
        EXPECT_EQ(this->arithmetic.makeWithSeconds(seconds, 600).timescale, 600) << seconds;
}

TYPED_TEST_P(MediaTimeContract, SecondsThatAreNoNumberMakeAnInvalidTime) {
    EXPECT_EQ(this->arithmetic.makeWithSeconds(notANumber, 600).flags & CMTime::Valid, 0U);
}

REGISTER_TYPED_TEST_SUITE_P(MediaTimeContract, SecondsAreTheValueByTheTimescale, AnInvalidTimeIsNoNumber,
                            InfiniteTimesAreInfinities, ATimeMadeOfSecondsIsThatManyTicks,
                            TheTimescaleIsKeptAsFarAsTheValueReaches,
                            SecondsThatAreNoNumberMakeAnInvalidTime);

} // namespace fcp::test
