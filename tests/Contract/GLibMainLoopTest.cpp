#include "Platform/Gtk/GLibMainLoop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace fcp::test {

namespace {

static_assert(!std::is_copy_constructible_v<GLibMainLoop> && !std::is_move_constructible_v<GLibMainLoop>);
static_assert(!std::is_copy_constructible_v<ReadyTimeSource>);

using Clock = std::chrono::steady_clock;

class GLibMainLoopTest : public testing::Test {
protected:
    GRef<GMainContext> const context = GRef<GMainContext>::adopt(g_main_context_new());
    GLibMainLoop loop{context.get()};

    void turn() { g_main_context_iteration(context.get(), FALSE); }

    bool waitFor(std::function<bool()> const& condition) {
        auto const end = Clock::now() + std::chrono::seconds(20);
        while (!condition() && Clock::now() < end)
            turn();
        return condition();
    }

    Seconds timeOf(int turns) {
        auto const start = Clock::now();
        for (int i = 0; i < turns; ++i)
            turn();
        return Clock::now() - start;
    }

    static void spin(Seconds duration) {
        for (auto const end = Clock::now() + duration; Clock::now() < end;) {
        }
    }
};

} // namespace

TEST_F(GLibMainLoopTest, ABurstOfTwentyThousandPostsOfAnotherThreadIsCompleteAndInOrder) {
    constexpr int count = 20'000;
    std::vector<int> ran;
    ran.reserve(count);
    std::thread poster([&] {
        for (int i = 0; i < count; ++i)
            loop.post([&ran, i] { ran.push_back(i); });
    });
    EXPECT_TRUE(waitFor([&] { return ran.size() == count; }));
    poster.join();
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(ran[static_cast<std::size_t>(i)], i);
}

TEST_F(GLibMainLoopTest, PostsOfSeveralThreadsKeepTheOrderOfEach) {
    constexpr int count = 2'000;
    constexpr int threads = 4;
    std::vector<std::vector<int>> ran(threads);
    std::atomic<int> total = 0;
    std::vector<std::jthread> posters;
    posters.reserve(threads);
    for (int thread = 0; thread < threads; ++thread) {
        posters.emplace_back([&, thread] {
            for (int i = 0; i < count; ++i) {
                loop.post([&, thread, i] {
                    ran[static_cast<std::size_t>(thread)].push_back(i);
                    ++total;
                });
            }
        });
    }
    ASSERT_TRUE(waitFor([&] { return total == count * threads; }));
    for (auto const& one : ran)
        EXPECT_TRUE(std::ranges::is_sorted(one));
}

TEST_F(GLibMainLoopTest, AFloodOfPostsLeavesTurnsToOtherSources) {
    int ran = 0;
    int turnsOfOthers = 0;
    for (int i = 0; i < 500; ++i) {
        loop.post([&] {
            spin(Seconds(0.0002));
            ++ran;
        });
    }
    std::function<void()> const other = [&] {
        ++turnsOfOthers;
        loop.after(Seconds(0), other);
    };
    loop.after(Seconds(0), other);
    ASSERT_TRUE(waitFor([&] { return ran == 500; }));
    EXPECT_GE(turnsOfOthers, 5); // 0.1 s of work in turns of 8 ms
}

TEST_F(GLibMainLoopTest, ThousandsOfDeadlinesThatFallDueTogetherLeaveTurnsToOtherSources) {
    int ran = 0;
    int turnsOfOthers = 0;
    for (int i = 0; i < 500; ++i) {
        loop.after(Seconds(0), [&] {
            spin(Seconds(0.0002));
            ++ran;
        });
    }
    std::function<void()> const other = [&] {
        ++turnsOfOthers;
        loop.post(other);
    };
    loop.post(other);
    ASSERT_TRUE(waitFor([&] { return ran == 500; }));
    EXPECT_GE(turnsOfOthers, 5);
}

// A source per deadline makes a turn cost about 10 ms with this many: the loop below would take 20 s.
TEST_F(GLibMainLoopTest, AHundredThousandPendingDeadlinesCostATurnNothing) {
    for (int i = 0; i < 100'000; ++i)
        loop.after(Seconds(60 + i % 7), [] {});
    EXPECT_LT(timeOf(2'000), Seconds(1));
}

TEST_F(GLibMainLoopTest, AnIdleLoopSleepsThoughItWasUsed) {
    int ran = 0;
    loop.post([&] { ++ran; });
    loop.after(Seconds(0), [&] { ++ran; });
    loop.after(Seconds(60), [] {});
    ASSERT_TRUE(waitFor([&] { return ran == 2; }));
    turn(); // takes note of what has just been set
    EXPECT_FALSE(g_main_context_pending(context.get()));
}

TEST_F(GLibMainLoopTest, WhatATaskAddsWaitsForALaterTurn) {
    std::string trace;
    loop.post([&] { loop.post([&] { trace += "post,"; }); });
    loop.after(Seconds(0), [&] { loop.after(Seconds(-1), [&] { trace += "after,"; }); });
    turn();
    EXPECT_EQ(trace, "");
    turn();
    EXPECT_EQ(trace, "post,after,");
}

TEST_F(GLibMainLoopTest, ATaskThatRunsALoopOfItsOwnSeesLaterTasksRun) {
    auto posted = false;
    auto owed = false;
    auto ended = false;
    loop.post([&] {
        loop.post([&] { posted = true; });
        loop.after(Seconds(0.001), [&] { owed = true; });
        ended = waitFor([&] { return posted && owed; });
    });
    EXPECT_TRUE(waitFor([&] { return ended; }));
    loop.after(Seconds(0), [&] {
        auto inner = false;
        loop.after(Seconds(0.001), [&] { inner = true; });
        ended = !waitFor([&] { return inner; });
    });
    EXPECT_TRUE(waitFor([&] { return !ended; }));
}

TEST_F(GLibMainLoopTest, WhatIsOwedIsDroppedWithTheLoop) {
    auto const token = std::make_shared<int>(0);
    {
        GLibMainLoop shortLived(context.get());
        shortLived.post([token] {});
        shortLived.after(Seconds(0), [token] {});
        auto const timer = shortLived.timer(Seconds(0), [token] {});
        EXPECT_EQ(token.use_count(), 4);
    }
    EXPECT_EQ(token.use_count(), 1);
    turn();
}

} // namespace fcp::test
