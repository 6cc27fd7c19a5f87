#pragma once

#include "Ports/MainLoop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace fcp::test {

using Condition = std::function<bool()>;

// A harness has the `loop`, its `now`, and waits for a condition while it turns the loop.
template <typename Harness>
class MainLoopContract : public testing::Test {
protected:
    Harness harness;
    MainLoop& loop = harness.loop;

    bool waitFor(Condition const& condition) { return harness.waitFor(condition); }

    // Until everything that was due before has run.
    void settle() {
        auto done = false;
        loop.after(Seconds(0.03), [&] { done = true; });
        ASSERT_TRUE(waitFor([&] { return done; }));
    }

    // What is owed by a task that was dropped is released; by one that still waits it is not.
    std::weak_ptr<int> watched;

    std::shared_ptr<int> token() {
        auto const made = std::make_shared<int>(0);
        watched = made;
        return made;
    }
};

TYPED_TEST_SUITE_P(MainLoopContract);

TYPED_TEST_P(MainLoopContract, PostsRunLaterAndInTheirOrder) {
    std::vector<int> ran;
    for (int i = 0; i < 100; ++i)
        this->loop.post([&ran, i] { ran.push_back(i); });
    EXPECT_TRUE(ran.empty());
    ASSERT_TRUE(this->waitFor([&] { return ran.size() == 100; }));
    std::vector<int> expected(100);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(ran, expected);
}

TYPED_TEST_P(MainLoopContract, ATaskThatPostsHasReturnedWhenThePostRuns) {
    std::string trace;
    this->loop.post([&] {
        this->loop.post([&] { trace += "inner"; });
        trace += "outer,";
    });
    ASSERT_TRUE(this->waitFor([&] { return trace.ends_with("inner"); }));
    EXPECT_EQ(trace, "outer,inner");
}

TYPED_TEST_P(MainLoopContract, PostsOfAnotherThreadRunAndEndOnTheMainThread) {
    auto const here = std::this_thread::get_id();
    std::thread::id ranOn;
    std::thread::id destroyedOn;
    std::thread([&] {
        std::shared_ptr<void> const witness(nullptr,
                                            [&](void*) { destroyedOn = std::this_thread::get_id(); });
        this->loop.post([&ranOn, witness] { ranOn = std::this_thread::get_id(); });
    }).join();
    ASSERT_TRUE(this->waitFor([&] { return ranOn != std::thread::id(); }));
    EXPECT_EQ(ranOn, here);
    EXPECT_EQ(destroyedOn, here);
}

TYPED_TEST_P(MainLoopContract, TellsTheMainThreadFromOthers) {
    EXPECT_TRUE(this->loop.isMainThread());
    std::optional<bool> elsewhere;
    std::thread([&] { elsewhere = this->loop.isMainThread(); }).join();
    EXPECT_EQ(elsewhere, false);
}

TYPED_TEST_P(MainLoopContract, ADelayIsNeverCutShort) {
    auto const start = this->harness.now();
    std::optional<Seconds> ranAt;
    this->loop.after(Seconds(0.05), [&] { ranAt = this->harness.now() + Seconds(0.001); });
    ASSERT_TRUE(this->waitFor([&] { return ranAt.has_value(); }));
    EXPECT_GE(*ranAt - start, Seconds(0.05));
}

TYPED_TEST_P(MainLoopContract, EarlierDeadlinesRunFirstAndEqualOnesInTheOrderOfTheCalls) {
    std::string trace;
    this->loop.after(Seconds(0.03), [&] { trace += "d"; });
    this->loop.after(Seconds(0.01), [&] { trace += "b"; });
    this->loop.after(Seconds(0), [&] { trace += "a"; });
    this->loop.after(Seconds(0.02), [&] { trace += "c"; });
    ASSERT_TRUE(this->waitFor([&] { return trace.size() == 4; }));
    EXPECT_EQ(trace, "abcd");
}

TYPED_TEST_P(MainLoopContract, DeadlinesWithoutADelayKeepTheOrderOfTheCallsAndRunLater) {
    std::vector<int> ran; // so many that some fall on the same tick of any clock
    for (int i = 0; i < 1000; ++i)
        this->loop.after(Seconds(0), [&ran, i] { ran.push_back(i); });
    EXPECT_TRUE(ran.empty());
    ASSERT_TRUE(this->waitFor([&] { return ran.size() == 1000; }));
    EXPECT_TRUE(std::ranges::is_sorted(ran));
}

TYPED_TEST_P(MainLoopContract, ADelayInThePastIsNone) {
    auto ran = false;
    this->loop.after(Seconds(-5), [&] { ran = true; });
    EXPECT_FALSE(ran);
    EXPECT_TRUE(this->waitFor([&] { return ran; }));
}

TYPED_TEST_P(MainLoopContract, ADelayThatIsNoNumberIsNone) {
    int ran = 0;
    this->loop.after(Seconds(std::numeric_limits<double>::quiet_NaN()), [&] { ++ran; });
    auto const timer = this->loop.timer(Seconds(std::numeric_limits<double>::quiet_NaN()), [&] { ++ran; });
    EXPECT_EQ(ran, 0);
    EXPECT_TRUE(this->waitFor([&] { return ran == 2; }));
}

TYPED_TEST_P(MainLoopContract, AnEndlessDelayNeverEnds) {
    auto const ran = std::make_shared<int>(0); // outlives this case, as what is owed does
    for (double const endless : {1e300, std::numeric_limits<double>::infinity()}) {
        this->loop.after(Seconds(endless), [ran] { ++*ran; });
        this->loop.timer(Seconds(endless), [ran] { ++*ran; }).reset();
    }
    this->settle();
    EXPECT_EQ(*ran, 0);
}

TYPED_TEST_P(MainLoopContract, ATaskMayOweTheNextOne) {
    int ran = 0;
    std::function<void()> const again = [&] {
        if (++ran < 5)
            this->loop.after(Seconds(0.001), again);
    };
    this->loop.after(Seconds(0.001), again);
    EXPECT_TRUE(this->waitFor([&] { return ran == 5; }));
}

TYPED_TEST_P(MainLoopContract, ATimerFiresOnce) {
    int fired = 0;
    auto const timer = this->loop.timer(Seconds(0.001), [&] { ++fired; });
    ASSERT_TRUE(this->waitFor([&] { return fired > 0; }));
    this->settle();
    EXPECT_EQ(fired, 1);
}

TYPED_TEST_P(MainLoopContract, AnInvalidatedTimerNeverFiresAndLetsGoOfItsTask) {
    int fired = 0;
    auto const timer = this->loop.timer(Seconds(0.001), [&fired, token = this->token()] { ++fired; });
    EXPECT_FALSE(this->watched.expired());
    timer->invalidate();
    EXPECT_TRUE(this->watched.expired());
    timer->invalidate();
    this->settle();
    EXPECT_EQ(fired, 0);
}

TYPED_TEST_P(MainLoopContract, DestroyingTheHandleLeavesTheTimerRunning) {
    int fired = 0;
    this->loop.timer(Seconds(0.001), [&] { ++fired; }).reset();
    EXPECT_TRUE(this->waitFor([&] { return fired == 1; }));
}

TYPED_TEST_P(MainLoopContract, ATimerMayBeInvalidatedInItsOwnTaskAndAfterIt) {
    std::unique_ptr<Timer> timer;
    int fired = 0;
    auto const token = this->token();
    timer = this->loop.timer(Seconds(0.001), [&timer, &fired, token] {
        timer->invalidate();
        fired += token.use_count() > 0 ? 1 : 0; // still there after its own end
    });
    ASSERT_TRUE(this->waitFor([&] { return fired == 1; }));
    timer->invalidate();
    this->settle();
    EXPECT_EQ(fired, 1);
}

TYPED_TEST_P(MainLoopContract, ATimerMayBeDestroyedAndReplacedInItsOwnTask) {
    std::unique_ptr<Timer> timer;
    std::string trace;
    timer = this->loop.timer(Seconds(0.001), [&] {
        timer = this->loop.timer(Seconds(0.001), [&] { trace += "second"; });
        trace += "first,";
    });
    ASSERT_TRUE(this->waitFor([&] { return trace.ends_with("second"); }));
    EXPECT_EQ(trace, "first,second");
}

TYPED_TEST_P(MainLoopContract, ATaskMayInvalidateATimerThatIsDueWithIt) {
    int fired = 0;
    std::unique_ptr<Timer> other;
    auto const first = this->loop.timer(Seconds(0), [&] { other->invalidate(); });
    other = this->loop.timer(Seconds(0), [&] { ++fired; });
    this->settle();
    EXPECT_EQ(fired, 0);
}

TYPED_TEST_P(MainLoopContract, ATimerThatOwnsItsHandleMayBeInvalidated) {
    struct Owner {
        std::unique_ptr<Timer> timer;
    };

    auto owner = std::make_shared<Owner>();
    std::weak_ptr<Owner> const gone = owner;
    owner->timer = this->loop.timer(Seconds(0.001), [owner] {});
    auto* const last = owner->timer.get();
    owner.reset();
    EXPECT_FALSE(gone.expired());
    last->invalidate();
    EXPECT_TRUE(gone.expired());
}

REGISTER_TYPED_TEST_SUITE_P(MainLoopContract, PostsRunLaterAndInTheirOrder,
                            ATaskThatPostsHasReturnedWhenThePostRuns,
                            PostsOfAnotherThreadRunAndEndOnTheMainThread, TellsTheMainThreadFromOthers,
                            ADelayIsNeverCutShort, EarlierDeadlinesRunFirstAndEqualOnesInTheOrderOfTheCalls,
                            DeadlinesWithoutADelayKeepTheOrderOfTheCallsAndRunLater, ADelayInThePastIsNone,
                            ADelayThatIsNoNumberIsNone, AnEndlessDelayNeverEnds, ATaskMayOweTheNextOne,
                            ATimerFiresOnce, AnInvalidatedTimerNeverFiresAndLetsGoOfItsTask,
                            DestroyingTheHandleLeavesTheTimerRunning,
                            ATimerMayBeInvalidatedInItsOwnTaskAndAfterIt,
                            ATimerMayBeDestroyedAndReplacedInItsOwnTask,
                            ATaskMayInvalidateATimerThatIsDueWithIt, ATimerThatOwnsItsHandleMayBeInvalidated);

} // namespace fcp::test
