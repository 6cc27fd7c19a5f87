#include "Workbench/ContainerApp/ChangeThrottle.h"

#include <gtest/gtest.h>

namespace workbench {

namespace {

using namespace std::chrono_literals;
using Changes = std::vector<ChangeThrottle::Change>;

auto const start = ChangeThrottle::Time{} + 1h;

} // namespace

TEST(ChangeThrottle, LetsTheFirstChangePassAtOnce) {
    auto throttle = ChangeThrottle{};
    throttle.note({"a", 1});
    EXPECT_EQ((Changes{{"a", 1}}), throttle.takeDue(start));
    EXPECT_EQ(std::nullopt, throttle.nextDue());
}

TEST(ChangeThrottle, HoldsTheNextOneFor50Milliseconds) {
    auto throttle = ChangeThrottle{};
    throttle.note({"a", 1});
    std::ignore = throttle.takeDue(start);
    throttle.note({"a", 2});
    EXPECT_EQ(Changes{}, throttle.takeDue(start + 49ms));
    EXPECT_EQ(start + 50ms, throttle.nextDue());
    EXPECT_EQ((Changes{{"a", 2}}), throttle.takeDue(start + 50ms));
}

TEST(ChangeThrottle, TellsOnlyTheLastOfABurst) {
    auto throttle = ChangeThrottle{};
    throttle.note({"a", 1});
    std::ignore = throttle.takeDue(start);
    for (auto revision = std::uint64_t{2}; revision < 100; ++revision)
        throttle.note({"a", revision});
    EXPECT_EQ((Changes{{"a", 99}}), throttle.takeDue(start + 1s));
    EXPECT_EQ(Changes{}, throttle.takeDue(start + 2s));
}

TEST(ChangeThrottle, KeepsSequencesApart) {
    auto throttle = ChangeThrottle{};
    throttle.note({"a", 1});
    std::ignore = throttle.takeDue(start);
    throttle.note({"a", 2});
    throttle.note({"b", 7});
    EXPECT_EQ((Changes{{"b", 7}}), throttle.takeDue(start + 10ms));
    EXPECT_EQ(start + 50ms, throttle.nextDue());
}

TEST(ChangeThrottle, LetsAChangePassAtOnceAfterAQuietTime) {
    auto throttle = ChangeThrottle{};
    throttle.note({"a", 1});
    std::ignore = throttle.takeDue(start);
    throttle.note({"a", 2});
    EXPECT_EQ((Changes{{"a", 2}}), throttle.takeDue(start + 50ms));
    throttle.note({"a", 3});
    EXPECT_EQ((Changes{{"a", 3}}), throttle.takeDue(start + 100ms));
}

} // namespace workbench
