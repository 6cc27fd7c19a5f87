#include "Platform/Cocoa/CocoaHostRuntime.h"

#include "Cocoa/HostObjects.h"
#include "Cocoa/RunLoop.h"
#include "Doubles/FakeHost.h"
#include "FcpExtension/ProExtensionAPI.h"
#include "Platform/Cocoa/CocoaMediaTime.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <thread>

namespace fcp::test {

namespace {

using Lines = std::vector<std::string>;

class CocoaHostRuntimeTest : public testing::Test {
protected:
    [[nodiscard]] std::shared_ptr<ProExtensionAPI> makeApi() {
        auto const api = ProExtensionAPI::create(runtime, mediaTimes);
        host.keepObservers();
        return api;
    }

    HostObjects host;
    Journal& journal = host.journal;
    CocoaHostRuntime runtime;
    CocoaMediaTime const mediaTimes;
};

TEST_F(CocoaHostRuntimeTest, FetchesTheHostThenAddsOneObserver) {
    auto const api = makeApi();
    EXPECT_EQ(journal.lines(), (Lines{"host singleton", "host timeline", "timeline add:"}));
    EXPECT_EQ(host.observers(), 1);
}

TEST_F(CocoaHostRuntimeTest, RemovesTheObserverThatItAdded) {
    auto api = makeApi();
    journal.take();
    api = nullptr;
    EXPECT_EQ(journal.lines(), (Lines{"host timeline", "timeline remove:"}));
    EXPECT_TRUE(host.removedWhatWasAdded());
    EXPECT_EQ(host.observers(), 0);
}

TEST_F(CocoaHostRuntimeTest, ReadsThePlayheadByTwoMessages) {
    host.setPlayhead(mediaTime(25, 2));
    auto const api = makeApi();
    journal.take();
    EXPECT_EQ(api->getPlayheadSeconds(), 12.5);
    EXPECT_EQ(journal.lines(), (Lines{"host timeline", "timeline playheadTime"}));
}

TEST_F(CocoaHostRuntimeTest, PassesEveryFieldOfATimeOn) {
    CMTime const time{
        .value = -7, .timescale = 30000, .flags = CMTime::Valid | CMTime::HasBeenRounded, .epoch = 9};
    auto const timeline = runtime.proExtensionHostSingleton()->timeline();
    timeline->movePlayheadTo(time);
    host.setPlayhead(time);
    for (auto const& passed : {host.movedTo(), timeline->playheadTime()}) {
        EXPECT_EQ(passed.value, -7);
        EXPECT_EQ(passed.timescale, 30000);
        EXPECT_EQ(passed.flags, time.flags);
        EXPECT_EQ(passed.epoch, 9);
    }
}

TEST_F(CocoaHostRuntimeTest, SeeksInTicksOf600thsWhateverTheSeconds) {
    auto const api = makeApi();
    journal.take();
    for (double const seconds : {12.5, -3.0, 1e300, -1e300, std::nan(""), HUGE_VAL}) {
        api->seekTo(seconds);
        EXPECT_EQ(journal.take(), (Lines{"host timeline", "timeline movePlayheadTo:"}));
        EXPECT_EQ(host.movedTo().timescale, 600) << seconds;
    }
    api->seekTo(12.5);
    EXPECT_EQ(host.movedTo().value, 7500);
}

TEST_F(CocoaHostRuntimeTest, DescribesTheActiveSequenceAndNeverAsksForItsStart) {
    host.setDurations(mediaTime(21, 2), mediaTime(1001, 30000));
    auto const api = makeApi();
    journal.take();
    EXPECT_EQ(api->getSequenceInfo(), (Json{{"name", "Interview"},
                                            {"duration", 10.5},
                                            {"frameRate", 29.97},
                                            {"width", 0},
                                            {"height", 0},
                                            {"startTimecode", "00:00:00:00"}}));
    EXPECT_EQ(journal.count("host timeline"), 1);
    EXPECT_EQ(journal.count("timeline activeSequence"), 1);
    EXPECT_EQ(journal.count("sequence duration"), 1);
    EXPECT_EQ(journal.count("sequence frameDuration"), 1);
    EXPECT_EQ(journal.count("sequence name"), 1);
    EXPECT_EQ(journal.lines().size(), 5U);
}

TEST_F(CocoaHostRuntimeTest, ReadsANilNameAsTheEmptyText) {
    host.setName(std::nullopt);
    EXPECT_EQ(makeApi()->getSequenceInfo().value().at("name"), "");
}

TEST_F(CocoaHostRuntimeTest, ReadsNamesBeyondAscii) {
    host.setName("Łódź \U0001F600");
    EXPECT_EQ(makeApi()->getSequenceInfo().value().at("name"), "Łódź \U0001F600");
}

TEST_F(CocoaHostRuntimeTest, HasNoHostWhereTheProcessHandsOutNil) {
    host.dropHost();
    journal.take();
    EXPECT_EQ(runtime.proExtensionHostSingleton(), nullptr);
    auto api = ProExtensionAPI::create(runtime, mediaTimes);
    EXPECT_EQ(api->getPlayheadSeconds(), 0.0);
    EXPECT_EQ(api->getSequenceInfo(), std::nullopt);
    api->seekTo(4.0);
    api = nullptr;
    EXPECT_EQ(journal.lines(), (Lines{"host singleton", "host singleton"}));
}

TEST_F(CocoaHostRuntimeTest, GivesDefaultsWithoutATimeline) {
    host.dropTimeline();
    journal.take();
    auto api = ProExtensionAPI::create(runtime, mediaTimes);
    EXPECT_EQ(api->getPlayheadSeconds(), 0.0);
    EXPECT_EQ(api->getSequenceInfo(), std::nullopt);
    api->seekTo(4.0);
    api = nullptr;
    EXPECT_EQ(journal.count("host timeline"), 5);
    EXPECT_EQ(journal.lines().size(), 6U);
}

TEST_F(CocoaHostRuntimeTest, DescribesNothingWithoutASequence) {
    host.dropSequence();
    auto const api = makeApi();
    EXPECT_EQ(api->getSequenceInfo(), std::nullopt);
}

TEST_F(CocoaHostRuntimeTest, AsksTheHostNothingForNotificationsBeforeACallback) {
    auto const api = makeApi();
    journal.take();
    host.notifyPlayhead();
    host.notifySequence();
    EXPECT_EQ(journal.lines(), Lines{});
}

TEST_F(CocoaHostRuntimeTest, ForwardsBothNotifications) {
    auto const api = makeApi();
    std::vector<double> playheads;
    std::vector<std::string> names;
    api->onPlayheadChanged([&](double seconds) { playheads.push_back(seconds); });
    api->onSequenceChanged([&](Json const& info) { names.push_back(info.at("name")); });
    host.setPlayhead(mediaTime(3, 2));
    host.notifyPlayhead();
    host.notifySequence();
    EXPECT_EQ(playheads, std::vector{1.5});
    EXPECT_EQ(names, Lines{"Interview"});
}

TEST_F(CocoaHostRuntimeTest, CallsBackOnTheHostsThreadInsideTheNotification) {
    auto const api = makeApi();
    host.setPlayhead(mediaTime(2, 1));
    std::thread::id calledOn;
    double heard = 0;
    api->onPlayheadChanged([&](double seconds) {
        calledOn = std::this_thread::get_id();
        heard = seconds;
    });
    std::thread([&] {
        host.notifyPlayhead();
        EXPECT_EQ(calledOn, std::this_thread::get_id());
    }).join();
    EXPECT_EQ(heard, 2.0);
}

TEST_F(CocoaHostRuntimeTest, DoesNothingForANotificationAfterItsEnd) {
    auto api = makeApi();
    int calls = 0;
    api->onPlayheadChanged([&](double) { ++calls; });
    api->onSequenceChanged([&](Json const&) { ++calls; });
    api = nullptr;
    journal.take();
    host.notifyPlayhead();
    host.notifySequence();
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(journal.lines(), Lines{});
}

TEST_F(CocoaHostRuntimeTest, RemovesFromTheTimelineThatTheHostHasAtTheEnd) {
    auto api = makeApi();
    host.renewTimeline();
    journal.take();
    api = nullptr;
    EXPECT_EQ(journal.lines(), (Lines{"host timeline", "timeline remove:"}));
}

TEST_F(CocoaHostRuntimeTest, SendsNoRemoveWithoutATimelineAtTheEnd) {
    auto api = makeApi();
    host.dropTimeline();
    journal.take();
    api = nullptr;
    EXPECT_EQ(journal.lines(), Lines{"host timeline"});
}

TEST_F(CocoaHostRuntimeTest, HoldsTheHostAsLongAsItLivesAndNoLonger) {
    Pool const pool;
    host.setPlayhead(mediaTime(3, 1));
    auto api = makeApi();
    host.dropHost();
    EXPECT_EQ(journal.count("host dealloc"), 0);
    EXPECT_EQ(api->getPlayheadSeconds(), 3.0);
    api = nullptr;
    EXPECT_EQ(journal.count("host dealloc"), 1);
    EXPECT_EQ(journal.count("timeline dealloc"), 1);
    EXPECT_EQ(journal.count("sequence dealloc"), 1);
}

TEST_F(CocoaHostRuntimeTest, LetsGoOfAnObserverOnceItIsRemoved) {
    struct Observer final : FCPXTimelineObserver {};

    auto observer = std::make_shared<Observer>();
    std::weak_ptr const watched = observer;
    auto const found = runtime.proExtensionHostSingleton();
    {
        Pool const pool;
        found->timeline()->add(observer);
        found->timeline()->remove(observer);
        EXPECT_TRUE(host.removedWhatWasAdded());
    }
    observer = nullptr;
    EXPECT_TRUE(watched.expired());
}

TEST_F(CocoaHostRuntimeTest, AsksTheProcessAnewEachTime) {
    EXPECT_NE(runtime.proExtensionHostSingleton(), nullptr);
    host.dropHost();
    EXPECT_EQ(runtime.proExtensionHostSingleton(), nullptr);
}

} // namespace

} // namespace fcp::test
