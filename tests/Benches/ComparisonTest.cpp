#include "benches/Harness/Comparison.h"
#include "benches/Harness/Program.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace fcp::bench {
namespace {

constexpr Bound atLeast{Bound::Kind::AtLeast, 0.95};
constexpr Bound atMost{Bound::Kind::AtMost, 1.10};

Comparison measured(Bound bound, double ours, double floor) {
    Comparison comparison("work", " us", 1, bound);
    comparison.add(ours, floor);
    return comparison;
}

int status(Options const& options, double ours) {
    return runProgram(options, [ours](Report& report) { report.print(measured(atMost, ours, 100)); });
}

TEST(Comparison, TakesTheMiddleValueAsTheMedian) {
    EXPECT_EQ(median({9, 1, 5}), 5);
    EXPECT_EQ(median({4, 1, 100, 2}), 3);
    EXPECT_EQ(median({7}), 7);
}

TEST(Comparison, PrintsTheMedianOfTheRatiosOfTheRoundsWithItsSpread) {
    Comparison comparison("work", " us", 1, atMost);
    comparison.add(100, 100);
    comparison.add(330, 300);
    comparison.add(240, 200);
    comparison.addRemark("p99 1 ms");
    comparison.addRemark("none lost");
    EXPECT_EQ(comparison.line(),
              "work: ours 240.0 us, floor 200.0 us, ratio 1.100 (1.000..1.200), bound <= 1.10: "
              "within; p99 1 ms; none lost");
}

TEST(Comparison, SaysWhenTheBoundIsMissed) {
    EXPECT_EQ(measured(atLeast, 94, 100).line(),
              "work: ours 94.0 us, floor 100.0 us, ratio 0.940 (0.940..0.940), bound >= 0.95: BEYOND");
}

TEST(Comparison, HoldsABoundUpToItsOwnValue) {
    EXPECT_TRUE(measured(atLeast, 95, 100).isWithinBound());
    EXPECT_TRUE(measured(atLeast, 300, 100).isWithinBound());
    EXPECT_FALSE(measured(atLeast, 94.9, 100).isWithinBound());
    EXPECT_TRUE(measured(atMost, 50, 100).isWithinBound());
    EXPECT_FALSE(measured(atMost, 110.1, 100).isWithinBound());
}

TEST(Program, FailsForAMissedBoundOnlyWhenItWasToCheck) {
    EXPECT_EQ(status({.check = false}, 150), 0);
    EXPECT_EQ(status({.check = true}, 150), 1);
    EXPECT_EQ(status({.check = true}, 100), 0);
}

TEST(Program, KeepsAMissedBoundInMindWhenALaterOneHolds) {
    auto const result = runProgram({.check = true}, [](Report& report) {
        report.print(measured(atMost, 150, 100));
        report.print(measured(atMost, 100, 100));
    });
    EXPECT_EQ(result, 1);
}

TEST(Program, FailsWhenTheMeasuringFails) {
    auto const broken = [](Report&) { throw std::runtime_error("the page is gone"); };
    EXPECT_EQ(runProgram({}, broken), 1);
}

TEST(Program, ThrowsTheFirstRoundAwayAndTurnsTheOrderRoundWithEachRound) {
    std::string order;
    std::vector<std::vector<int>> taken;
    int calls = 0;
    auto const side = [&](char name) { return [&, name] { return order += name, ++calls; }; };
    alternate<int>({.rounds = 2}, {side('a'), side('b')},
                   [&taken](std::vector<int> const& values) { taken.push_back(values); });
    EXPECT_EQ(order, "abbaab");
    EXPECT_EQ(taken, (std::vector<std::vector<int>>{{4, 3}, {5, 6}}));
}

} // namespace
} // namespace fcp::bench
