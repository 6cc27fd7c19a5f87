#include "FcpExtension/ContainerAppBridge.h"

#include "Doubles/FakePlatform.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>

namespace fcp::test {

namespace {

class ContainerAppBridgeTest : public testing::Test {
protected:
    [[nodiscard]] std::shared_ptr<ContainerAppBridge> makeBridge(std::int64_t commandsSent = 0) {
        return ContainerAppBridge::create(center, platform.uuids, platform.mainLoop, commandsSent);
    }

    // A completion that notes its value here.
    [[nodiscard]] Completion<bool> flag() {
        return {"flag", [this](Outcome<bool> const& outcome) { flags.push_back(std::get<0>(outcome)); }};
    }

    [[nodiscard]] Completion<std::optional<std::string>> folder() {
        return {"folder", [this](auto const& outcome) { folders.push_back(std::get<0>(outcome)); }};
    }

    [[nodiscard]] Completion<std::optional<Json>> marker() {
        return {"marker", [this](auto const& outcome) { markers.push_back(std::get<0>(outcome)); }};
    }

    [[nodiscard]] Json const& sent(std::size_t index) const {
        return center.posted.at(index).userInfo.value();
    }

    void respond(Json userInfo) {
        bridge->handleResponse({"com.zelvix.fcp.containerResponse", {}, std::move(userInfo)});
    }

    void answer(std::size_t index, Json result) {
        respond({{"requestId", sent(index).at("requestId")}, {"result", std::move(result)}});
    }

    FakePlatform platform;
    FakeNotificationCenter& center = platform.notificationCenter;
    std::shared_ptr<ContainerAppBridge> bridge = makeBridge();
    std::vector<bool> flags;
    std::vector<std::optional<std::string>> folders;
    std::vector<std::optional<Json>> markers;
};

TEST_F(ContainerAppBridgeTest, NumbersItsCommandsFrom1WithSixUpperCaseHexadecimalDigits) {
    bridge->openURL("a");
    bridge->openURL("b");
    EXPECT_EQ(sent(0).at("requestId"), "req-1-000001");
    EXPECT_EQ(sent(1).at("requestId"), "req-2-000002");
}

TEST_F(ContainerAppBridgeTest, TellsTheFirstCommandsOfTwoBridgesApart) {
    auto const other = makeBridge();
    bridge->openURL("a");
    other->openURL("a");
    EXPECT_NE(sent(0).at("requestId"), sent(1).at("requestId"));
    EXPECT_TRUE(sent(1).at("requestId").get<std::string>().starts_with("req-1-"));
}

TEST_F(ContainerAppBridgeTest, PostsItsCommandsUnderTheirNotificationName) {
    bridge->openURL("https://a.test/");
    EXPECT_EQ(center.posted.at(0).name, "com.zelvix.fcp.containerCommand");
    EXPECT_EQ(sent(0),
              (Json{{"command", "openURL"}, {"requestId", "req-1-000001"}, {"url", "https://a.test/"}}));
}

TEST_F(ContainerAppBridgeTest, NestsACommentButSpreadsExportSettings) {
    bridge->syncComment({{"id", "c1"}}, flag());
    bridge->startExport({{"format", "csv"}}, flag());
    EXPECT_EQ(sent(0).at("comment"), (Json{{"id", "c1"}}));
    EXPECT_EQ(sent(1), (Json{{"command", "startExport"}, {"requestId", "req-2-000002"}, {"format", "csv"}}));
    answer(0, true);
    answer(1, true);
}

TEST_F(ContainerAppBridgeTest, OverwritesPayloadEntriesWithTheEnvelopesOwn) {
    bridge->startExport({{"command", "quit"}, {"requestId", 7}}, flag());
    EXPECT_EQ(sent(0), (Json{{"command", "startExport"}, {"requestId", "req-1-000001"}}));
    answer(0, true);
}

TEST_F(ContainerAppBridgeTest, SendsNothingButTheEnvelopeForCommandsWithoutArguments) {
    bridge->clearAllMarkers(flag());
    bridge->cancelExport(flag());
    bridge->selectOutputFolder(folder());
    EXPECT_EQ(sent(0), (Json{{"command", "clearAllMarkers"}, {"requestId", "req-1-000001"}}));
    EXPECT_EQ(sent(1), (Json{{"command", "cancelExport"}, {"requestId", "req-2-000002"}}));
    EXPECT_EQ(sent(2), (Json{{"command", "selectOutputFolder"}, {"requestId", "req-3-000003"}}));
    platform.mainLoop.advance(Seconds(60));
}

TEST_F(ContainerAppBridgeTest, SendsTheArgumentsOfTheOtherCommandsUnderTheirKeys) {
    bridge->deleteComment("c1", flag());
    bridge->syncAllComments(Json::array({{{"id", "a"}}, {{"id", "b"}}}), flag());
    bridge->getMarkerAtTime(42, 0.5, marker());
    EXPECT_EQ(sent(0).at("commentId"), "c1");
    EXPECT_EQ(sent(1).at("comments"), (Json::array({{{"id", "a"}}, {{"id", "b"}}})));
    EXPECT_TRUE(sent(2).at("seconds").is_number() && sent(2).at("threshold").is_number());
    EXPECT_EQ(sent(2).at("seconds"), 42.0);
    platform.mainLoop.advance(Seconds(60));
}

TEST_F(ContainerAppBridgeTest, ReadsOnlyTheBooleanTrueAsTrue) {
    std::vector<Json> const results{true, false, nullptr, "true", 1, Json::object(), Json::array({true})};
    for (auto const& result : results) {
        bridge->clearAllMarkers(flag());
        answer(center.posted.size() - 1, result);
    }
    EXPECT_EQ(flags, (std::vector<bool>{true, false, false, false, false, false, false}));
}

TEST_F(ContainerAppBridgeTest, ReadsAFolderOnlyFromAString) {
    for (auto const& result : {Json("/tmp/\u00E9"), Json(5), Json(nullptr), Json(false), Json("")}) {
        bridge->selectOutputFolder(folder());
        answer(center.posted.size() - 1, result);
    }
    using Folder = std::optional<std::string>;
    EXPECT_EQ(folders, (std::vector<Folder>{"/tmp/\u00E9", std::nullopt, std::nullopt, std::nullopt, ""}));
}

TEST_F(ContainerAppBridgeTest, ReadsAMarkerOnlyFromADictionary) {
    for (auto const& result :
         {Json{{"id", "c1"}}, Json("c1"), Json::array(), Json(nullptr), Json::object()}) {
        bridge->getMarkerAtTime(1, 0.5, marker());
        answer(center.posted.size() - 1, result);
    }
    using Marker = std::optional<Json>;
    EXPECT_EQ(markers, (std::vector<Marker>{Json{{"id", "c1"}}, std::nullopt, std::nullopt, std::nullopt,
                                            Json::object()}));
}

TEST_F(ContainerAppBridgeTest, ReadsAnAbsentResultAsNoValue) {
    bridge->getMarkerAtTime(1, 0.5, marker());
    respond({{"requestId", sent(0).at("requestId")}});
    EXPECT_EQ(markers, (std::vector<std::optional<Json>>{std::nullopt}));
}

TEST_F(ContainerAppBridgeTest, CompletesAfter60SecondsWithFalseOrNoValue) {
    bridge->clearAllMarkers(flag());
    bridge->selectOutputFolder(folder());
    bridge->getMarkerAtTime(1, 0.5, marker());
    platform.mainLoop.advance(Seconds(59.999));
    EXPECT_EQ(bridge->pendingRequestCount(), 3U);
    EXPECT_TRUE(flags.empty());
    platform.mainLoop.advance(Seconds(0.001));
    EXPECT_EQ(flags, std::vector<bool>{false});
    EXPECT_EQ(folders.size(), 1U);
    EXPECT_EQ(markers.size(), 1U);
    EXPECT_EQ(bridge->pendingRequestCount(), 0U);
}

TEST_F(ContainerAppBridgeTest, IgnoresAnAnswerAfterTheTimeout) {
    bridge->clearAllMarkers(flag());
    platform.mainLoop.advance(Seconds(61));
    answer(0, true);
    EXPECT_EQ(flags, std::vector<bool>{false});
}

TEST_F(ContainerAppBridgeTest, DoesNothingOnATimeoutAfterTheAnswer) {
    bridge->clearAllMarkers(flag());
    answer(0, true);
    EXPECT_EQ(platform.mainLoop.pending(), 1U); // never cancelled
    platform.mainLoop.advance(Seconds(61));
    EXPECT_EQ(flags, std::vector<bool>{true});
}

TEST_F(ContainerAppBridgeTest, DeliversOnlyTheFirstOfTwoAnswers) {
    bridge->clearAllMarkers(flag());
    answer(0, true);
    answer(0, false);
    EXPECT_EQ(flags, std::vector<bool>{true});
}

TEST_F(ContainerAppBridgeTest, IgnoresAnswersWithoutAStringIdentifierOfItsOwn) {
    bridge->clearAllMarkers(flag());
    bridge->handleResponse({"com.zelvix.fcp.containerResponse", {}, std::nullopt});
    bridge->handleResponse({"com.zelvix.fcp.containerResponse", {}, Json("text")});
    for (auto const& requestId :
         {Json(1), Json(nullptr), Json::array({sent(0).at("requestId")}), Json("req-9-FFFFFF")})
        respond({{"requestId", requestId}, {"result", true}});
    respond({{"result", true}});
    EXPECT_TRUE(flags.empty());
    platform.mainLoop.advance(Seconds(60));
    EXPECT_EQ(flags, std::vector<bool>{false});
}

TEST_F(ContainerAppBridgeTest, LooksNeitherAtTheNameNorAtTheSenderOfAnAnswer) {
    bridge->clearAllMarkers(flag());
    bridge->handleResponse(
        {"something.else", "anybody", Json{{"requestId", sent(0).at("requestId")}, {"result", true}}});
    EXPECT_EQ(flags, std::vector<bool>{true});
}

TEST_F(ContainerAppBridgeTest, FindsItsEntryForAnAnswerThatArrivesInsideThePost) {
    center.onPost = [this](Notification const& command) {
        respond({{"requestId", command.userInfo->at("requestId")}, {"result", true}});
    };
    bridge->clearAllMarkers(flag());
    EXPECT_EQ(flags, std::vector<bool>{true});
    EXPECT_EQ(bridge->pendingRequestCount(), 0U);
}

TEST_F(ContainerAppBridgeTest, RemovesAnAnsweredEntryOnlyAfterItsCallback) {
    std::size_t pendingInside = 0;
    bridge->clearAllMarkers(
        {"inside", [&](Outcome<bool> const&) { pendingInside = bridge->pendingRequestCount(); }});
    answer(0, true);
    EXPECT_EQ(pendingInside, 1U);
    EXPECT_EQ(bridge->pendingRequestCount(), 0U);
}

TEST_F(ContainerAppBridgeTest, RemovesATimedOutEntryBeforeItsCallback) {
    std::size_t pendingInside = 9;
    bridge->clearAllMarkers(
        {"inside", [&](Outcome<bool> const&) { pendingInside = bridge->pendingRequestCount(); }});
    platform.mainLoop.advance(Seconds(60));
    EXPECT_EQ(pendingInside, 0U);
}

TEST_F(ContainerAppBridgeTest, LetsACallbackSendManyCommandsAndReceiveADuplicateAnswer) {
    int answered = 0;
    bridge->clearAllMarkers({"inside", [&](Outcome<bool> const&) {
                                 ++answered;
                                 for (int i = 0; i < 1000; ++i) // enough to move every entry of the table
                                     bridge->openURL("x");
                                 answer(0, true);
                             }});
    answer(0, true);
    EXPECT_EQ(answered, 1);
    EXPECT_EQ(bridge->pendingRequestCount(), 1000U);
    platform.mainLoop.advance(Seconds(60));
    EXPECT_EQ(bridge->pendingRequestCount(), 0U);
}

TEST_F(ContainerAppBridgeTest, HoldsAnEntryForOpenURLUntilTheAnswerOrTheTimeout) {
    bridge->openURL("a");
    bridge->openURL("b");
    EXPECT_EQ(bridge->pendingRequestCount(), 2U);
    answer(0, "whatever");
    EXPECT_EQ(bridge->pendingRequestCount(), 1U);
    platform.mainLoop.advance(Seconds(60));
    EXPECT_EQ(bridge->pendingRequestCount(), 0U);
}

TEST_F(ContainerAppBridgeTest, DropsItsCallbacksWhenItIsDestroyed) {
    bridge->clearAllMarkers(flag());
    testing::internal::CaptureStderr();
    bridge = nullptr;
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Completion of flag was dropped without being resumed.\n");
    platform.mainLoop.advance(Seconds(61));
    EXPECT_TRUE(flags.empty());
}

TEST_F(ContainerAppBridgeTest, SurvivesBeingLetGoByACallback) {
    bridge->clearAllMarkers({"last", [&](Outcome<bool> const&) { bridge = nullptr; }});
    auto& borrowed = *bridge;
    borrowed.handleResponse({"", {}, Json{{"requestId", sent(0).at("requestId")}, {"result", true}}});
    EXPECT_EQ(bridge, nullptr);
}

TEST_F(ContainerAppBridgeTest, RegistersNothingByItself) {
    EXPECT_TRUE(center.observers.empty());
}

TEST_F(ContainerAppBridgeTest, EmptiesItsTableAfterAFloodOfAnswers) {
    for (int i = 0; i < 1000; ++i)
        bridge->openURL("x");
    for (int round = 0; round < 3; ++round) {
        for (std::size_t i = 0; i < 1000; ++i)
            answer(i, Json::object());
    }
    for (int i = 0; i < 20'000; ++i)
        respond({{"requestId", "req-" + std::to_string(i) + "-ZZZZZZ"}, {"result", true}});
    EXPECT_EQ(bridge->pendingRequestCount(), 0U);
}

TEST_F(ContainerAppBridgeTest, SendsItsLastCommandAtTheCountersMaximum) {
    auto const maximum = std::numeric_limits<std::int64_t>::max();
    makeBridge(maximum - 1)->openURL("a");
    EXPECT_EQ(sent(0).at("requestId"), "req-9223372036854775807-000001");
}

TEST_F(ContainerAppBridgeTest, DiesWhenItsCounterOverflows) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto const last = makeBridge(std::numeric_limits<std::int64_t>::max());
    EXPECT_DEATH(last->openURL("a"), "Fatal error: Arithmetic overflow: requestCounter");
}

TEST_F(ContainerAppBridgeTest, CannotBeCopiedOrMoved) {
    static_assert(!std::is_copy_constructible_v<ContainerAppBridge> &&
                  !std::is_move_constructible_v<ContainerAppBridge>);
}

} // namespace

} // namespace fcp::test
