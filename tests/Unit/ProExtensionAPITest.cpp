#include "FcpExtension/ProExtensionAPI.h"

#include "Doubles/FakePlatform.h"
#include "Doubles/ThreadedHost.h"

#include <gtest/gtest.h>

#include <thread>

namespace fcp::test {

namespace {

class ProExtensionAPITest : public testing::Test {
protected:
    [[nodiscard]] std::shared_ptr<ProExtensionAPI> makeApi() {
        return ProExtensionAPI::create(platform.hostRuntime, platform.mediaTimes);
    }

    // The frame rate reported for one frame duration.
    [[nodiscard]] double frameRate(CMTime frameDuration) {
        platform.timeline().sequence->frame = frameDuration;
        return makeApi()->getSequenceInfo().value().at("frameRate");
    }

    FakePlatform platform;
    Journal& journal = platform.journal;
};

using Lines = std::vector<std::string>;

TEST_F(ProExtensionAPITest, FetchesTheHostThenRegistersItsObserverWithTheTimeline) {
    auto const api = makeApi();
    EXPECT_EQ(journal.lines(), (Lines{"host singleton", "host timeline", "timeline add"}));
    EXPECT_EQ(platform.timeline().observers.size(), 1U);
}

TEST_F(ProExtensionAPITest, ForwardsPlayheadAndSequenceNotificationsToItsCallbacks) {
    auto const api = makeApi();
    std::vector<double> playheads;
    std::vector<Json> sequences;
    api->onPlayheadChanged([&](double seconds) { playheads.push_back(seconds); });
    api->onSequenceChanged([&](Json const& info) { sequences.push_back(info); });
    platform.timeline().notifyPlayhead(12.5);
    platform.timeline().notifySequence();
    EXPECT_EQ(playheads, std::vector{12.5});
    ASSERT_EQ(sequences.size(), 1U);
    EXPECT_EQ(sequences[0], api->getSequenceInfo());
}

TEST_F(ProExtensionAPITest, AsksTheHostNothingForNotificationsBeforeACallbackIsInstalled) {
    auto const api = makeApi();
    auto const observer = platform.timeline().observers.at(0);
    journal.take();
    observer->playheadTimeChanged();
    observer->activeSequenceChanged();
    EXPECT_EQ(journal.lines(), Lines{});
}

TEST_F(ProExtensionAPITest, CallsOnlyTheLatestOfTwoCallbacks) {
    auto const api = makeApi();
    int first = 0;
    int second = 0;
    api->onPlayheadChanged([&](double) { ++first; });
    api->onPlayheadChanged([&](double) { ++second; });
    platform.timeline().notifyPlayhead(1.0);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TEST_F(ProExtensionAPITest, AsksForTheTimelineAnewForEveryNotificationAndEveryQuery) {
    auto const api = makeApi();
    api->onPlayheadChanged([](double) {});
    auto const observer = platform.timeline().observers.at(0);
    journal.take();
    observer->playheadTimeChanged();
    EXPECT_EQ(journal.take(), (Lines{"host timeline", "timeline playheadTime"}));
    EXPECT_EQ(api->getPlayheadSeconds(), 0.0);
    EXPECT_EQ(journal.take(), (Lines{"host timeline", "timeline playheadTime"}));
}

TEST_F(ProExtensionAPITest, CallsNobodyWhenTheTimelineHasGone) {
    auto const api = makeApi();
    int calls = 0;
    api->onPlayheadChanged([&](double) { ++calls; });
    api->onSequenceChanged([&](Json const&) { ++calls; });
    auto const observer = platform.timeline().observers.at(0);
    platform.hostRuntime.host->current = nullptr;
    observer->playheadTimeChanged();
    observer->activeSequenceChanged();
    EXPECT_EQ(calls, 0);
}

TEST_F(ProExtensionAPITest, ReportsTheSixKeysOfTheActiveSequence) {
    EXPECT_EQ(makeApi()->getSequenceInfo().value(), (Json{{"name", "Interview"},
                                                          {"duration", 10.5},
                                                          {"frameRate", 29.97},
                                                          {"width", 0},
                                                          {"height", 0},
                                                          {"startTimecode", "00:00:00:00"}}));
}

TEST_F(ProExtensionAPITest, ReportsWidthAndHeightAsTheInteger0AndTheDurationAsADouble) {
    platform.timeline().sequence->length = mediaTime(10, 1);
    auto const info = makeApi()->getSequenceInfo().value();
    EXPECT_TRUE(info.at("width").is_number_integer());
    EXPECT_TRUE(info.at("height").is_number_integer());
    EXPECT_EQ(info.at("width").dump(), "0");
    EXPECT_TRUE(info.at("duration").is_number_float());
    EXPECT_TRUE(info.at("frameRate").is_number_float());
}

TEST_F(ProExtensionAPITest, NeverAsksForTheSequencesStart) {
    auto const info = makeApi()->getSequenceInfo().value();
    EXPECT_EQ(journal.count("sequence start"), 0);
    EXPECT_EQ(info.at("startTimecode"), "00:00:00:00");
}

TEST_F(ProExtensionAPITest, ReadsAMissingNameAsTheEmptyText) {
    platform.timeline().sequence->sequenceName = std::nullopt;
    EXPECT_EQ(makeApi()->getSequenceInfo().value().at("name"), "");
}

TEST_F(ProExtensionAPITest, RoundsTheFrameRateToTwoDecimals) {
    EXPECT_EQ(frameRate(mediaTime(1001, 24000)), 23.98);
    EXPECT_EQ(frameRate(mediaTime(1, 25)), 25.0);
    EXPECT_EQ(frameRate(mediaTime(1001, 30000)), 29.97);
    EXPECT_EQ(frameRate(mediaTime(1001, 60000)), 59.94);
}

TEST_F(ProExtensionAPITest, RoundsAHalfHundredthAwayFromZero) {
    EXPECT_EQ(frameRate(mediaTime(8, 1)), 0.13); // 0.125 exactly
}

TEST_F(ProExtensionAPITest, ReportsFrameRate0ForZeroNegativeAndInvalidFrameDurations) {
    EXPECT_EQ(frameRate(mediaTime(0, 24)), 0.0);
    EXPECT_EQ(frameRate(mediaTime(-1, 24)), 0.0);
    EXPECT_EQ(frameRate(invalidTime()), 0.0);
}

// Frame durations that no host's rational time reaches, yet a platform's arithmetic may.
class TinyMediaTime final : public MediaTime {
public:
    [[nodiscard]] double seconds(CMTime) const override { return 1e-310; }

    [[nodiscard]] CMTime makeWithSeconds(double, std::int32_t) const override { return {}; }
};

TEST_F(ProExtensionAPITest, PassesAnInfiniteRateAndAnInfiniteDurationOn) {
    platform.timeline().sequence->length = CMTime{0, 0, CMTime::Valid | CMTime::PositiveInfinity, 0};
    EXPECT_TRUE(std::isinf(makeApi()->getSequenceInfo().value().at("duration").get<double>()));
    TinyMediaTime const tiny;
    auto const api = ProExtensionAPI::create(platform.hostRuntime, tiny);
    EXPECT_TRUE(std::isinf(api->getSequenceInfo().value().at("frameRate").get<double>()));
}

TEST_F(ProExtensionAPITest, SeeksInTicksOf600thsWhateverTheSeconds) {
    auto const api = makeApi();
    for (double const seconds :
         {0.0, 12.5, -3.0, 1e16, 1e300, -1e300, HUGE_VAL, -HUGE_VAL, std::nan(""), 0.0000001}) {
        api->seekTo(seconds);
        EXPECT_EQ(platform.timeline().moves.back().timescale, 600) << seconds;
    }
    EXPECT_EQ(platform.timeline().moves.at(1).value, 7500);
}

TEST_F(ProExtensionAPITest, SeeksNoFurtherThanTicksOf600thsReach) {
    auto const api = makeApi();
    for (double const seconds : {1.6e16, 1e300}) {
        api->seekTo(seconds);
        EXPECT_GT(platform.timeline().moves.back().value, 9'223'372'036'854'770'000);
        api->seekTo(-seconds);
        EXPECT_LT(platform.timeline().moves.back().value, -9'223'372'036'854'770'000);
    }
}

TEST_F(ProExtensionAPITest, MakesTheSeeksMediaTimeBeforeItAsksForTheTimeline) {
    platform.hostRuntime.host->current = nullptr;
    auto const api = makeApi();
    api->seekTo(1.0);
    EXPECT_EQ(platform.mediaTimes.made, 1); // made although there is no timeline to hand it to
}

TEST_F(ProExtensionAPITest, ReadsThePlayheadWithoutAnActiveSequence) {
    platform.timeline().sequence = nullptr;
    platform.timeline().playhead = mediaTime(7, 2);
    auto const api = makeApi();
    EXPECT_EQ(api->getPlayheadSeconds(), 3.5);
    EXPECT_EQ(api->getSequenceInfo(), std::nullopt);
}

TEST_F(ProExtensionAPITest, PassesAPlayheadThatIsNoNumberOn) {
    platform.timeline().playhead = invalidTime();
    EXPECT_TRUE(std::isnan(makeApi()->getPlayheadSeconds()));
}

TEST_F(ProExtensionAPITest, GivesFixedDefaultsWithoutATimeline) {
    platform.hostRuntime.host->current = nullptr;
    auto const api = makeApi();
    EXPECT_EQ(api->getPlayheadSeconds(), 0.0);
    EXPECT_EQ(api->getSequenceInfo(), std::nullopt);
    api->seekTo(4.0);
}

TEST_F(ProExtensionAPITest, BehavesWithoutAHostAsWithoutATimeline) {
    platform.hostRuntime.host = nullptr;
    auto api = makeApi();
    EXPECT_EQ(api->getPlayheadSeconds(), 0.0);
    EXPECT_EQ(api->getSequenceInfo(), std::nullopt);
    api->seekTo(4.0);
    api->onPlayheadChanged([](double) {});
    api->onSequenceChanged([](Json const&) {});
    api = nullptr;
    EXPECT_EQ(journal.lines(), Lines{"host singleton"});
}

TEST_F(ProExtensionAPITest, StaysUnregisteredForGoodWhenThereWasNoTimelineAtConstruction) {
    auto const timeline = std::exchange(platform.hostRuntime.host->current, nullptr);
    auto const api = makeApi();
    platform.hostRuntime.host->current = timeline;
    timeline->playhead = mediaTime(2, 1);
    EXPECT_EQ(api->getPlayheadSeconds(), 2.0);
    EXPECT_EQ(journal.count("timeline add"), 0);
}

TEST_F(ProExtensionAPITest, MakesNoCallbackWhenTheSequenceIsClosed) {
    auto const api = makeApi();
    int calls = 0;
    api->onSequenceChanged([&](Json const&) { ++calls; });
    platform.timeline().sequence = nullptr;
    platform.timeline().notifySequence();
    EXPECT_EQ(calls, 0);
}

TEST_F(ProExtensionAPITest, UnregistersFromTheTimelineThatTheHostHasAtTheEnd) {
    auto api = makeApi();
    auto const first = platform.hostRuntime.host->current;
    auto const second = std::make_shared<FakeTimeline>(journal);
    platform.hostRuntime.host->current = second;
    journal.take();
    api = nullptr;
    EXPECT_EQ(journal.lines(), (Lines{"host timeline", "timeline remove"}));
    EXPECT_EQ(first->observers.size(), 1U); // the remove went to the other one
}

TEST_F(ProExtensionAPITest, SendsRemoveThoughAddWasNeverSent) {
    auto const timeline = std::exchange(platform.hostRuntime.host->current, nullptr);
    auto api = makeApi();
    platform.hostRuntime.host->current = timeline;
    api = nullptr;
    EXPECT_EQ(journal.count("timeline remove"), 1);
}

TEST_F(ProExtensionAPITest, SendsNoRemoveWhenTheHostHasNoTimelineAtTheEnd) {
    auto api = makeApi();
    auto const timeline = std::exchange(platform.hostRuntime.host->current, nullptr);
    api = nullptr;
    EXPECT_EQ(journal.count("timeline remove"), 0);
}

TEST_F(ProExtensionAPITest, DoesNothingForANotificationAfterItsEnd) {
    auto api = makeApi();
    int calls = 0;
    api->onPlayheadChanged([&](double) { ++calls; });
    auto const survivor = platform.timeline().observers.at(0);
    api = nullptr;
    journal.take();
    survivor->playheadTimeChanged();
    survivor->activeSequenceChanged();
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(journal.lines(), Lines{});
}

TEST_F(ProExtensionAPITest, ReleasesHostAndObserverAtTheEnd) {
    auto api = makeApi();
    std::weak_ptr const host = platform.hostRuntime.host;
    auto const observer = platform.timeline().added.at(0);
    platform.hostRuntime.host = nullptr;
    EXPECT_FALSE(host.expired());
    api = nullptr;
    EXPECT_TRUE(host.expired());
    EXPECT_TRUE(observer.expired());
}

TEST_F(ProExtensionAPITest, CallsBackOnTheNotifyingThreadInsideTheNotification) {
    auto const api = makeApi();
    std::thread::id calledOn;
    api->onPlayheadChanged([&](double) { calledOn = std::this_thread::get_id(); });
    auto const observer = platform.timeline().observers.at(0);
    std::thread host([&] {
        observer->playheadTimeChanged();
        EXPECT_EQ(calledOn, std::this_thread::get_id());
    });
    host.join();
}

TEST_F(ProExtensionAPITest, CannotBeCopiedOrMoved) {
    static_assert(!std::is_copy_constructible_v<ProExtensionAPI> &&
                  !std::is_move_constructible_v<ProExtensionAPI>);
}

TEST(ProExtensionAPIThreads, SurvivesNotificationsFromAnotherThreadThroughoutItsLife) {
    ThreadedHost host;
    FakeMediaTime const mediaTimes;
    for (int round = 0; round < 200; ++round) {
        auto api = ProExtensionAPI::create(host, mediaTimes);
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
        api->onPlayheadChanged([](double seconds) { EXPECT_EQ(seconds, 1.0); });
        api = nullptr;
        notifier.join();
    }
}

} // namespace

} // namespace fcp::test
