#include "HandlerFixture.h"

#include "Doubles/ThreadedHost.h"

#include <cmath>
#include <thread>

namespace fcp::test {

namespace {

class MessageHandlerPlayhead : public HandlerFixture {
protected:
    MessageHandlerPlayhead() { attachBridge(); }

    ~MessageHandlerPlayhead() override {
        for (auto& marker : bridge->markers)
            marker.resume(std::nullopt);
    }

    void moveTo(std::initializer_list<double> positions) {
        for (double const seconds : positions)
            platform.timeline().notifyPlayhead(seconds);
    }

    // The positions that were looked up.
    [[nodiscard]] std::vector<double> lookUps() const {
        std::vector<double> found;
        for (auto const& call : bridge->calls) {
            if (call.operation == "getMarkerAtTime")
                found.push_back(call.argument.at(0));
        }
        return found;
    }
};

using Positions = std::vector<double>;

TEST_F(MessageHandlerPlayhead, ReportsEveryMoveAndLooksUpOnlyAJump) {
    moveTo({10.0, 10.5, 11.2});
    EXPECT_EQ(page->eventNames(), Lines(3, "fcp:playhead-changed"));
    EXPECT_EQ(page->events().at(1).detail, (Json{{"seconds", 10.5}}));
    EXPECT_EQ(lookUps(), Positions{11.2});
    EXPECT_EQ(bridge->calls.at(0).argument, (Json{11.2, 0.5}));
}

TEST_F(MessageHandlerPlayhead, TakesABackwardMoveForAJump) {
    moveTo({30.0, 12.0});
    EXPECT_EQ(lookUps(), Positions{12.0});
}

TEST_F(MessageHandlerPlayhead, TakesADifferenceOfExactlyTheThresholdForNoJump) {
    moveTo({0.0, 0.6});
    EXPECT_EQ(lookUps(), Positions{});
    moveTo({0.0, 0.600001});
    EXPECT_EQ(lookUps(), Positions{0.600001});
}

TEST_F(MessageHandlerPlayhead, ComparesOnlyWithThePositionBefore) {
    moveTo({0.0, 0.5, 1.0, 1.5, 2.0});
    EXPECT_EQ(lookUps(), Positions{});
}

TEST_F(MessageHandlerPlayhead, NeverTakesTheFirstPositionForAJump) {
    moveTo({1000.0});
    EXPECT_EQ(lookUps(), Positions{});
}

TEST_F(MessageHandlerPlayhead, TakesTheHostsAnswerToThePagesSeekForNoJump) {
    moveTo({1.0});
    post({{"command", "seekTo"}, {"seconds", 42}});
    moveTo({42.0});
    EXPECT_EQ(lookUps(), Positions{});
}

TEST_F(MessageHandlerPlayhead, StoresTheSeekBeforeTheHostMoves) {
    moveTo({1.0});
    platform.timeline().onMove = [this] { moveTo({42.0}); }; // a host that notifies inside the seek
    post({{"command", "seekTo"}, {"seconds", 42}});
    EXPECT_EQ(lookUps(), Positions{});
}

TEST_F(MessageHandlerPlayhead, LeavesThePreviousPositionAloneForASeekWithoutSeconds) {
    moveTo({10.0});
    post({{"command", "seekTo"}});
    post({{"command", "seekTo"}, {"seconds", "42"}});
    moveTo({42.0});
    EXPECT_EQ(lookUps(), Positions{42.0});
}

TEST_F(MessageHandlerPlayhead, TakesAMoveFromWhatGetPlayheadReportedForNoJump) {
    moveTo({1.0});
    platform.timeline().playhead = mediaTime(50, 1);
    post({{"command", "getPlayhead"}}); // without a resolve identifier: it still counts
    moveTo({50.2});
    EXPECT_EQ(lookUps(), Positions{});
}

TEST_F(MessageHandlerPlayhead, KnowsAPositionOnceGetPlayheadWasAskedWithoutATimeline) {
    auto const timeline = std::exchange(platform.hostRuntime.host->current, nullptr);
    post({{"command", "getPlayhead"}}); // stores 0.0
    platform.hostRuntime.host->current = timeline;
    moveTo({5.0});
    EXPECT_EQ(lookUps(), Positions{5.0});
}

TEST_F(MessageHandlerPlayhead, SkipsTheNextJumpAfterASeekToANegativeTime) {
    moveTo({10.0});
    post({{"command", "seekTo"}, {"seconds", -2}});
    moveTo({30.0});
    EXPECT_EQ(lookUps(), Positions{});
    moveTo({40.0});
    EXPECT_EQ(lookUps(), Positions{40.0});
}

TEST_F(MessageHandlerPlayhead, TakesNoPositionForAJumpAfterOneThatIsNoNumber) {
    moveTo({10.0});
    platform.timeline().playhead = invalidTime();
    platform.timeline().notifyPlayhead();
    moveTo({30.0});
    EXPECT_EQ(lookUps(), Positions{});
    // A payload with such a number cannot be written: that one event is dropped.
    EXPECT_EQ(page->scripts.size(), 2U);
}

TEST_F(MessageHandlerPlayhead, SetsThePreviousPositionAfterTheLookupStarts) {
    moveTo({10.0});
    bridge->onWait = [this] {
        bridge->onWait = nullptr;
        moveTo({20.2}); // near the jump's target, yet far from the position that is still the previous one
    };
    moveTo({20.0});
    EXPECT_EQ(lookUps(), (Positions{20.0, 20.2}));
}

TEST_F(MessageHandlerPlayhead, SendsTheMarkerWithThePlayheadsSecondsOverItsOwn) {
    moveTo({1.0, 42.0});
    Json const marker{{"id", "c1"}, {"text", "Logo"}, {"seconds", 41.8}, {"start", 41.8}};
    bridge->markers.front().resume(marker);
    bridge->markers.clear();
    EXPECT_EQ(page->events().back().name, "fcp:marker-clicked");
    EXPECT_EQ(page->events().back().detail,
              (Json{{"id", "c1"}, {"text", "Logo"}, {"seconds", 42.0}, {"start", 41.8}}));
}

TEST_F(MessageHandlerPlayhead, SendsThePlayheadBeforeTheMarker) {
    bridge->onWait = [this] { bridge->markers.back().resume(Json::object()); };
    moveTo({1.0, 42.0});
    platform.mainLoop.runPosted();
    EXPECT_EQ(page->eventNames(),
              (Lines{"fcp:playhead-changed", "fcp:playhead-changed", "fcp:marker-clicked"}));
    bridge->markers.clear();
}

TEST_F(MessageHandlerPlayhead, SendsNoMarkerWhenNoneIsFoundOrTheLookupFails) {
    moveTo({1.0, 42.0, 1.0});
    bridge->markers.front().resume(std::nullopt);
    bridge->markers.back().fail({"no store"});
    bridge->markers.clear();
    EXPECT_EQ(page->eventNames(), Lines(3, "fcp:playhead-changed"));
    EXPECT_TRUE(journal.only({"info", "debug", "error"}).empty());
}

TEST_F(MessageHandlerPlayhead, LooksUpTwoQuickJumpsSideBySide) {
    moveTo({1.0, 42.0, 80.0});
    bridge->markers.back().resume(Json{{"id", "second"}});
    bridge->markers.front().resume(Json{{"id", "first"}});
    bridge->markers.clear();
    auto const events = page->events();
    EXPECT_EQ(events.at(3).detail, (Json{{"id", "second"}, {"seconds", 80.0}}));
    EXPECT_EQ(events.at(4).detail, (Json{{"id", "first"}, {"seconds", 42.0}}));
}

TEST_F(MessageHandlerPlayhead, OnlyReportsAJumpWithoutABridge) {
    handler->setContainerBridge(nullptr);
    moveTo({1.0, 42.0});
    EXPECT_EQ(page->eventNames(), Lines(2, "fcp:playhead-changed"));
    EXPECT_EQ(lookUps(), Positions{});
}

TEST_F(MessageHandlerPlayhead, ReportsEveryChangeOfTheActiveSequence) {
    platform.timeline().notifySequence();
    platform.timeline().sequence->sequenceName = "Reel 2";
    platform.timeline().notifySequence();
    EXPECT_EQ(page->eventNames(), Lines(2, "fcp:sequence-changed"));
    EXPECT_EQ(page->events().at(1).detail.at("name"), "Reel 2");
    platform.timeline().sequence = nullptr;
    platform.timeline().notifySequence();
    EXPECT_EQ(page->scripts.size(), 2U);
}

TEST_F(MessageHandlerPlayhead, KeepsThePreviousPositionOverAChangeOfSequence) {
    moveTo({10.0});
    platform.timeline().notifySequence();
    moveTo({30.0});
    EXPECT_EQ(lookUps(), Positions{30.0});
}

TEST_F(MessageHandlerPlayhead, KeepsTheHandlerUntilItsLookupEnds) {
    moveTo({1.0, 42.0});
    std::weak_ptr const weak = handler;
    handler = nullptr;
    EXPECT_FALSE(weak.expired());
    bridge->markers.front().resume(Json::object());
    bridge->markers.clear();
    EXPECT_EQ(page->eventNames().back(), "fcp:marker-clicked");
    EXPECT_TRUE(weak.expired());
}

TEST_F(MessageHandlerPlayhead, HopsToTheMainThreadInOrderWithTheValuesThatWereRead) {
    std::thread host([this] { moveTo({1.0, 2.0, 3.0}); });
    host.join();
    EXPECT_TRUE(page->scripts.empty());
    moveTo({4.0}); // on the main thread, behind the queued ones
    EXPECT_TRUE(page->scripts.empty());
    platform.mainLoop.runPosted();
    Positions seen;
    for (auto const& event : page->events())
        seen.push_back(event.detail.at("seconds"));
    EXPECT_EQ(seen, (Positions{1.0, 2.0, 3.0, 4.0}));
    EXPECT_EQ(lookUps(), (Positions{2.0, 3.0, 4.0}));
}

TEST_F(MessageHandlerPlayhead, DropsQueuedNotificationsWhenTheHandlerIsGone) {
    std::thread host([this] {
        moveTo({1.0});
        platform.timeline().notifySequence();
    });
    host.join();
    handler = nullptr;
    platform.mainLoop.runPosted();
    EXPECT_TRUE(page->scripts.empty());
}

TEST(MessageHandlerThreads, EndsOnTheMainThreadThoughTheHostIsNotifyingMeanwhile) {
    for (int round = 0; round < 200; ++round) {
        FakePlatform platform;
        ThreadedHost host;
        Platform const ports{platform.fileManager, host,
                             platform.logs,        platform.mainLoop,
                             platform.mediaTimes,  platform.notificationCenter,
                             platform.urlParser,   platform.userInterface,
                             platform.uuids,       platform.webEngine,
                             platform.workspace};
        auto const page = std::make_shared<FakeWebView>(platform.journal, "page");
        auto handler = MessageHandler::create(page, ports);
        std::weak_ptr const weak = handler;
        auto const observer = host.current->last;
        std::atomic<bool> running = false;
        std::thread notifier([&] {
            for (int i = 0; i < 100; ++i) {
                observer->playheadTimeChanged();
                running = true;
            }
        });
        while (!running)
            std::this_thread::yield();
        platform.mainLoop.runPosted();
        handler = nullptr;
        EXPECT_TRUE(weak.expired()); // nobody on the other thread holds it
        notifier.join();
        platform.mainLoop.runPosted();
    }
}

} // namespace

} // namespace fcp::test
