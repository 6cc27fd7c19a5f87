#include "Workbench/HostEditor/HostBridge.h"

#include "Workbench/HostEditor/WaitUntil.h"

#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <mutex>
#include <thread>
#include <type_traits>
#include <vector>

namespace workbench {
namespace {

using fcp::CMTime;

static_assert(!std::is_copy_constructible_v<HostBridge> && !std::is_move_constructible_v<HostBridge>);

// What an observer does with a notification: it asks the host, from inside the call.
class Listener final : public fcp::FCPXTimelineObserver {
public:
    explicit Listener(fcp::FCPXHost const& asked)
        : host(asked) {}

    void playheadTimeChanged() override {
        note("playhead " + std::to_string(host.timeline()->playheadTime().value));
    }

    void activeSequenceChanged() override {
        auto const sequence = host.timeline()->activeSequence();
        note("sequence " + (sequence ? sequence->name().value_or("?") : std::string{"none"}));
    }

    std::vector<std::string> heard() {
        std::lock_guard const lock{access};
        return lines;
    }

    std::thread::id thread() {
        std::lock_guard const lock{access};
        return last;
    }

private:
    void note(std::string line) {
        std::lock_guard const lock{access};
        lines.push_back(std::move(line));
        last = std::this_thread::get_id();
    }

    fcp::FCPXHost const& host;
    std::mutex access;
    std::vector<std::string> lines;
    std::thread::id last;
};

using Lines = std::vector<std::string>;

SequenceFacts film() {
    return {
        .key = "k", .uri = "file:///f", .name = "film", .rate = {30000, 1001}, .length = 300, .marks = {}};
}

class Host : public testing::Test {
protected:
    Host() {
        host.onMove([this](std::int64_t frame) { moves.push_back(frame); });
    }

    std::shared_ptr<Listener> listen() {
        auto listener = std::make_shared<Listener>(host);
        host.timeline()->add(listener);
        return listener;
    }

    void move(std::int64_t value, std::int32_t timescale, std::uint32_t flags = CMTime::Valid) {
        host.timeline()->movePlayheadTo({.value = value, .timescale = timescale, .flags = flags});
    }

    HostBridge host{HostBridge::Delivery::MainThread};
    std::vector<std::int64_t> moves;
    std::thread::id const mainThread = std::this_thread::get_id();
};

TEST_F(Host, HasATimelineFromTheStartAndNoSequence) {
    ASSERT_NE(host.timeline(), nullptr);
    EXPECT_EQ(host.timeline()->activeSequence(), nullptr);
    auto const playhead = host.timeline()->playheadTime();
    EXPECT_EQ(playhead.value, 0);
    EXPECT_GT(playhead.timescale, 0);
    EXPECT_EQ(playhead.flags, CMTime::Valid);
}

TEST_F(Host, TellsOnItsOwnThreadWhetherItIsObserved) {
    std::vector<bool> told;
    host.onObserved([&] {
        EXPECT_EQ(std::this_thread::get_id(), mainThread);
        told.push_back(host.isObserved());
    });
    EXPECT_FALSE(host.isObserved());
    auto const listener = std::make_shared<Listener>(host);
    std::thread{[&] { host.timeline()->add(listener); }}.join();
    ASSERT_TRUE(waitUntil([&] { return told.size() == 1; }));
    host.timeline()->remove(listener);
    ASSERT_TRUE(waitUntil([&] { return told.size() == 2; }));
    EXPECT_EQ(told, (std::vector<bool>{true, false}));
}

TEST_F(Host, TellsTimesAsExactFractions) {
    host.setActive(film(), 299);
    auto const timeline = host.timeline();
    EXPECT_EQ(timeline->playheadTime().value, 299 * 1001);
    EXPECT_EQ(timeline->playheadTime().timescale, 30000);
    auto const sequence = timeline->activeSequence();
    EXPECT_EQ(sequence->name(), "film");
    EXPECT_EQ(sequence->duration().value, 300 * 1001);
    EXPECT_EQ(sequence->duration().timescale, 30000);
    EXPECT_EQ(sequence->frameDuration().value, 1001);
    EXPECT_EQ(sequence->frameDuration().timescale, 30000);
    EXPECT_EQ(sequence->start().value, 0);
    EXPECT_EQ(sequence->start().timescale, 30000);
    EXPECT_EQ(sequence->start().flags, CMTime::Valid);
}

TEST_F(Host, TellsOfASequenceBeforeItsPlayhead) {
    auto const listener = listen();
    host.setActive(film(), 7);
    EXPECT_EQ(listener->heard(), (Lines{"sequence film", "playhead 7007"}));
}

TEST_F(Host, TellsOnceForEachFrame) {
    host.setActive(film(), 0);
    auto const listener = listen();
    host.setFrame(1);
    host.setFrame(2);
    EXPECT_EQ(listener->heard(), (Lines{"playhead 1001", "playhead 2002"}));
}

TEST_F(Host, TellsThatThereIsNoSequenceAnyMore) {
    host.setActive(film(), 5);
    auto const listener = listen();
    host.setActive({}, 0);
    EXPECT_EQ(listener->heard(), (Lines{"sequence none", "playhead 0"}));
}

TEST_F(Host, KeepsAnAnswerThatWasGivenOut) {
    host.setActive(film(), 5);
    auto const before = host.timeline()->activeSequence();
    host.setActive({}, 0);
    EXPECT_EQ(before->name(), "film");
}

TEST_F(Host, SharesAnObserverUntilItIsRemoved) {
    std::weak_ptr<Listener> const weak = listen();
    EXPECT_FALSE(weak.expired());
    host.timeline()->remove(weak.lock());
    EXPECT_TRUE(weak.expired());
}

TEST_F(Host, TellsAnObserverOnceHoweverOftenItWasAdded) {
    auto const listener = listen();
    host.timeline()->add(listener);
    host.setFrame(3);
    EXPECT_EQ(listener->heard().size(), 1U);
    host.timeline()->remove(listener);
    host.setFrame(4);
    EXPECT_EQ(listener->heard().size(), 1U);
}

TEST_F(Host, BearsTheRemovalOfWhatWasNeverAdded) {
    host.timeline()->remove(std::make_shared<Listener>(host));
    host.timeline()->remove(nullptr);
    host.timeline()->add(nullptr);
    host.setFrame(3);
}

TEST_F(Host, LetsAnObserverRemoveItselfInsideACall) {
    struct Leaver final : fcp::FCPXTimelineObserver, std::enable_shared_from_this<Leaver> {
        explicit Leaver(fcp::FCPXHost const& asked)
            : host(asked) {}

        void playheadTimeChanged() override {
            ++calls;
            host.timeline()->remove(shared_from_this());
        }

        fcp::FCPXHost const& host;
        int calls = 0;
    };

    auto const leaver = std::make_shared<Leaver>(host);
    host.timeline()->add(leaver);
    host.setFrame(1);
    host.setFrame(2);
    EXPECT_EQ(leaver->calls, 1);
}

TEST_F(Host, MovesToTheFrameThatContainsATime) {
    host.setActive(film(), 0);
    move(59, 600); // the fourth frame begins between 60 and 61
    move(60, 600);
    move(std::int64_t{1001} * 12, 30000);
    EXPECT_EQ(moves, (std::vector<std::int64_t>{2, 3, 12}));
}

TEST_F(Host, ClampsMovesToTheSequence) {
    host.setActive(film(), 0);
    move(-600, 600);
    move(600'000, 600);
    move(std::numeric_limits<std::int64_t>::max(), 600);
    EXPECT_EQ(moves, (std::vector<std::int64_t>{0, 299, 299}));
}

TEST_F(Host, IgnoresTimesThatAreNoNumberOfSeconds) {
    host.setActive(film(), 0);
    move(60, 600, 0);
    move(60, 600, CMTime::Valid | CMTime::PositiveInfinity);
    move(60, 600, CMTime::Valid | CMTime::NegativeInfinity);
    move(60, 600, CMTime::Valid | CMTime::Indefinite);
    move(60, 0);
    EXPECT_TRUE(moves.empty());
}

TEST_F(Host, IgnoresMovesWithoutASequence) {
    move(60, 600);
    EXPECT_TRUE(moves.empty());
}

TEST_F(Host, CarriesOutAMoveFromAnotherThreadOnTheMainOne) {
    host.setActive(film(), 0);
    std::thread::id mover;
    host.onMove([&](std::int64_t frame) {
        moves.push_back(frame);
        mover = std::this_thread::get_id();
    });
    std::jthread{[this] { move(600, 600); }}.join();
    EXPECT_TRUE(moves.empty());
    ASSERT_TRUE(waitUntil([this] { return !moves.empty(); }));
    EXPECT_EQ(moves, (std::vector<std::int64_t>{30}));
    EXPECT_EQ(mover, std::this_thread::get_id());
}

TEST_F(Host, IsSilentOnceItIsClosed) {
    auto const listener = listen();
    host.setActive(film(), 0);
    auto const before = listener->heard().size();
    host.close();
    host.setFrame(4);
    host.setActive({}, 0);
    move(60, 600);
    EXPECT_EQ(listener->heard().size(), before);
    EXPECT_TRUE(moves.empty());
}

TEST(HostOnAThreadOfItsOwn, TellsEverythingInOrderFromThere) {
    HostBridge host{HostBridge::Delivery::OwnThread};
    auto const listener = std::make_shared<Listener>(host);
    host.timeline()->add(listener);
    host.setActive(film(), 0);
    for (int frame = 1; frame <= 1000; ++frame)
        host.setFrame(frame);
    ASSERT_TRUE(waitUntil([&] { return listener->heard().size() == 1002; }));
    EXPECT_NE(listener->thread(), std::this_thread::get_id());
    EXPECT_EQ(listener->heard().front(), "sequence film");
    EXPECT_EQ(listener->heard().back(), "playhead 1001000");
}

TEST(HostOnAThreadOfItsOwn, BearsQuestionsAndObserversFromAllSides) {
    HostBridge host{HostBridge::Delivery::OwnThread};
    host.setActive(film(), 0);
    std::atomic<bool> isDone = false;
    std::jthread const visitor{[&] {
        while (!isDone) {
            auto const listener = std::make_shared<Listener>(host);
            host.timeline()->add(listener);
            auto const sequence = host.timeline()->activeSequence();
            EXPECT_TRUE(!sequence || sequence->frameDuration().timescale == 30000);
            host.timeline()->remove(listener);
        }
    }};
    for (int frame = 0; frame < 2000; ++frame)
        frame % 100 == 0 ? host.setActive(frame % 200 ? std::nullopt : std::optional{film()}, 0)
                         : host.setFrame(frame);
    isDone = true;
}

TEST(HostOnAThreadOfItsOwn, WaitsForTheCallThatIsRunningWhenItCloses) {
    struct Slow final : fcp::FCPXTimelineObserver {
        void playheadTimeChanged() override {
            isInside = true;
            while (!mayLeave)
                std::this_thread::yield();
            isInside = false;
        }

        std::atomic<bool> isInside = false;
        std::atomic<bool> mayLeave = false;
    };

    HostBridge host{HostBridge::Delivery::OwnThread};
    auto const slow = std::make_shared<Slow>();
    host.timeline()->add(slow);
    host.setFrame(1);
    host.setFrame(2);
    ASSERT_TRUE(waitUntil([&] { return slow->isInside.load(); }));
    std::jthread const opener{[&] { slow->mayLeave = true; }};
    host.close();
    EXPECT_FALSE(slow->isInside);
}

} // namespace
} // namespace workbench
