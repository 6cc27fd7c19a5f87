#include "Workbench/ContainerApp/CommentReader.h"
#include "Workbench/ContainerApp/Store.h"
#include "Workbench/ContainerApp/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

namespace workbench {

namespace {

class MarkerLookupTest : public testing::Test {
protected:
    MarkerLookupTest() {
        store.comments.setObserver([](auto const&...) {});
    }

    void add(std::string const& id, double start, double duration = 0) {
        ASSERT_TRUE(store.comments.sync(
            readComment({{"id", id}, {"seconds", start}, {"duration", duration}}).value()));
    }

    std::string at(double seconds, double threshold = 0.5) {
        auto const marker = store.markers.at(seconds, threshold);
        return marker ? marker->comment.id : "none";
    }

    void fill(int count, double gap) {
        auto list = Json::array();
        for (auto number = 0; number < count; ++number)
            list.push_back(
                {{"id", "c" + std::to_string(number)}, {"seconds", number * gap}, {"duration", 1}});
        ASSERT_TRUE(store.comments.syncAll(readComments(list).value()));
    }

    // The most that one of many lookups costs.
    int mostSteps(double until) {
        auto most = 0;
        for (auto number = 0; number < 50; ++number) {
            std::ignore = store.markers.takeSteps();
            std::ignore = store.markers.at(until * number / 50, 0.5);
            most = std::max(most, store.markers.takeSteps());
        }
        return most;
    }

    TemporaryFolder folder;
    Store store{folder / "store"};
};

MarkerCandidate candidate(std::string const& id, double start, double duration, std::int64_t position = 0) {
    return {.start = start, .duration = duration, .position = position, .id = id};
}

std::string nearest(std::vector<MarkerCandidate> candidates, double seconds) {
    auto const before = [seconds](auto const& a, auto const& b) { return isNearer(a, b, seconds); };
    return std::ranges::min_element(candidates, before)->id;
}

} // namespace

TEST(MarkerOrder, PrefersTheRangeThatContainsTheTime) {
    EXPECT_EQ("range", nearest({candidate("near", 10.1, 0), candidate("range", 2, 20)}, 10));
}

TEST(MarkerOrder, PrefersTheNearerOneOutsideAllRanges) {
    EXPECT_EQ("after", nearest({candidate("before", 9, 0.4), candidate("after", 10.5, 0)}, 10));
    EXPECT_EQ("before", nearest({candidate("before", 9, 0.6), candidate("after", 10.5, 0)}, 10));
}

TEST(MarkerOrder, PrefersTheNearerStartAmongRangesThatContainTheTime) {
    EXPECT_EQ("late", nearest({candidate("early", 0, 20), candidate("late", 9, 20)}, 10));
}

TEST(MarkerOrder, PrefersTheEarlierStartAtEqualDistance) {
    EXPECT_EQ("before", nearest({candidate("after", 11, 0, 0), candidate("before", 9, 0, 1)}, 10));
}

TEST(MarkerOrder, PrefersTheEarlierPlaceInTheListAtTheSameTime) {
    EXPECT_EQ("z", nearest({candidate("a", 10, 0, 2), candidate("z", 10, 0, 1)}, 10));
}

TEST(MarkerOrder, EndsWithTheIdentifier) {
    EXPECT_EQ("a", nearest({candidate("b", 10, 0, 1), candidate("a", 10, 0, 1)}, 10));
}

TEST(MarkerOrder, DoesNotDependOnTheOrderOfArrival) {
    auto candidates = std::vector<MarkerCandidate>{};
    for (auto number = 0; number < 60; ++number)
        candidates.push_back(candidate(std::to_string(number), number % 7, number % 3, number % 5));
    auto const first = nearest(candidates, 3.5);
    auto random = std::mt19937{7};
    for (auto round = 0; round < 50; ++round) {
        std::shuffle(candidates.begin(), candidates.end(), random);
        ASSERT_EQ(first, nearest(candidates, 3.5));
    }
}

TEST_F(MarkerLookupTest, FindsAMarkerWithinTheThreshold) {
    add("a", 12.5);
    EXPECT_EQ("a", at(12.5));
    EXPECT_EQ("a", at(13.0));
    EXPECT_EQ("a", at(12.0));
    EXPECT_EQ("none", at(13.01));
    EXPECT_EQ("none", at(11.99));
    EXPECT_EQ("a", at(12.5, 0));
    EXPECT_EQ("none", at(12.6, 0));
}

TEST_F(MarkerLookupTest, FindsARangeFromItsStartToItsEnd) {
    add("a", 10, 5);
    EXPECT_EQ("a", at(9.5));
    EXPECT_EQ("a", at(12));
    EXPECT_EQ("a", at(15.5));
    EXPECT_EQ("none", at(15.6));
}

TEST_F(MarkerLookupTest, FindsNothingInAnEmptyStore) {
    EXPECT_EQ("none", at(0));
}

TEST_F(MarkerLookupTest, FindsALongRangeBehindManyShortOnes) {
    add("long", 0, 1000);
    for (auto number = 1; number < 100; ++number)
        add("c" + std::to_string(number), number);
    EXPECT_EQ("long", at(500));
}

TEST_F(MarkerLookupTest, TakesNoReplyForAMarker) {
    add("a", 10);
    ASSERT_TRUE(store.comments.sync(readComment({{"id", "r"}, {"parentId", "a"}, {"seconds", 20}}).value()));
    EXPECT_EQ("none", at(20));
    auto const marker = store.markers.at(10, 0.5);
    ASSERT_EQ(1U, marker->replies.size());
    EXPECT_EQ("r", marker->replies[0].id);
}

TEST_F(MarkerLookupTest, LooksInTheActiveSequenceOnly) {
    add("a", 10);
    auto sequence = HostSequence{};
    sequence.key = "other";
    store.sequences.setActive(sequence);
    EXPECT_EQ("none", at(10));
}

TEST_F(MarkerLookupTest, FindsNothingAtThresholdsThatMakeNoSense) {
    add("a", 10);
    EXPECT_EQ("none", at(10, -1));
    EXPECT_EQ("none", at(10, std::numeric_limits<double>::quiet_NaN()));
    EXPECT_EQ("a", at(1e6, std::numeric_limits<double>::infinity()));
    EXPECT_EQ("none", at(1e300));
}

TEST_F(MarkerLookupTest, CostsTheSameAmongTenThousandCommentsAsAmongAHundred) {
    fill(100, 2);
    auto const few = mostSteps(200);
    fill(10'000, 2);
    auto const many = mostSteps(20'000);
    EXPECT_LE(many, few + few / 4);
    EXPECT_EQ("c5000", at(10'000.5));
}

TEST_F(MarkerLookupTest, StaysCheapAfterALongRangeHasLeftWithItsList) {
    fill(10'000, 2);
    auto const before = mostSteps(20'000);
    add("long", 0, 20'000);
    fill(10'000, 2);
    EXPECT_EQ(before, mostSteps(20'000));
}

} // namespace workbench
