#include "Contract/MediaTimeContract.h"

#include "Platform/Gtk/RationalMediaTime.h"

#include <cmath>
#include <limits>
#include <string>

namespace fcp::test {

namespace {

using Arithmetics = testing::Types<FakeMediaTime, RationalMediaTime>;

INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, MediaTimeContract, Arithmetics);

TEST(RationalMediaTime, AnIndefiniteTimeIsNoNumber) {
    RationalMediaTime const arithmetic;
    EXPECT_TRUE(std::isnan(arithmetic.seconds(flagged(CMTime::Valid | CMTime::Indefinite))));
}

TEST(RationalMediaTime, ATimeWithoutATimescaleIsNoNumber) {
    RationalMediaTime const arithmetic;
    EXPECT_TRUE(std::isnan(arithmetic.seconds(mediaTime(5, 0))));
    EXPECT_TRUE(std::isnan(arithmetic.seconds(mediaTime(0, 0))));
}

TEST(RationalMediaTime, ExtremeFieldsAreSafe) {
    RationalMediaTime const arithmetic;
    constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
    constexpr auto lowestScale = std::numeric_limits<std::int32_t>::min();
    EXPECT_DOUBLE_EQ(arithmetic.seconds(mediaTime(lowest, -1)), 9223372036854775808.0);
    EXPECT_DOUBLE_EQ(arithmetic.seconds(mediaTime(lowest, lowestScale)), 4294967296.0);
}

TEST(RationalMediaTime, BetweenTwoTicksTheValueIsCutTowardsZeroAndSaysSo) {
    RationalMediaTime const arithmetic;
    auto const later = arithmetic.makeWithSeconds(1.999 / 600, 600);
    EXPECT_EQ(later.value, 1);
    EXPECT_EQ(later.flags, CMTime::Valid | CMTime::HasBeenRounded);
    auto const earlier = arithmetic.makeWithSeconds(-1.999 / 600, 600);
    EXPECT_EQ(earlier.value, -1);
    EXPECT_EQ(earlier.flags, CMTime::Valid | CMTime::HasBeenRounded);
}

TEST(RationalMediaTime, InfiniteSecondsMakeAnInfiniteTime) {
    RationalMediaTime const arithmetic;
    EXPECT_EQ(arithmetic.makeWithSeconds(infinity, 600).flags, CMTime::Valid | CMTime::PositiveInfinity);
    EXPECT_EQ(arithmetic.makeWithSeconds(-infinity, 600).flags, CMTime::Valid | CMTime::NegativeInfinity);
}

TEST(RationalMediaTime, ATimescaleBelowOneMakesAnInvalidTime) {
    RationalMediaTime const arithmetic;
    EXPECT_EQ(arithmetic.makeWithSeconds(1, 0).flags, 0U);
    EXPECT_EQ(arithmetic.makeWithSeconds(1, -600).flags, 0U);
}

} // namespace

} // namespace fcp::test
