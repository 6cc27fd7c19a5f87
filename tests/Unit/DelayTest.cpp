#include "FcpExtension/Delay.h"

#include <gtest/gtest.h>

#include <limits>

namespace fcp::test {

namespace {

using std::chrono::microseconds;
using std::chrono::nanoseconds;

constexpr auto notANumber = Seconds(std::numeric_limits<double>::quiet_NaN());
constexpr auto infinite = Seconds(std::numeric_limits<double>::infinity());

TEST(Delay, StaysWhatItIs) {
    EXPECT_EQ(usableDelay(Seconds(60)), Seconds(60));
    EXPECT_EQ(usableDelay(Seconds(0)), Seconds(0));
}

TEST(Delay, ThatIsNegativeOrNotANumberIsNone) {
    for (auto const delay : {Seconds(-5), -infinite, notANumber}) {
        EXPECT_EQ(usableDelay(delay), Seconds(0));
        EXPECT_EQ(ticksOf<microseconds>(delay), 0);
    }
}

TEST(Delay, ThatIsEndlessFitsACounterOfNanosecondsThatRuns) {
    for (auto const delay : {endlessDelay, Seconds(1e300), infinite}) {
        EXPECT_EQ(usableDelay(delay), endlessDelay);
        EXPECT_GT(ticksOf<nanoseconds>(delay), 0);
        EXPECT_LT(ticksOf<nanoseconds>(delay), std::numeric_limits<std::int64_t>::max() / 2);
    }
}

TEST(Delay, IsNeverCutShort) {
    EXPECT_EQ(ticksOf<microseconds>(Seconds(0.5)), 500'000);
    EXPECT_EQ(ticksOf<microseconds>(Seconds(1e-9)), 1);
    EXPECT_EQ(ticksOf<nanoseconds>(Seconds(1.5e-9)), 2);
}

} // namespace

} // namespace fcp::test
