#include "HandlerFixture.h"

namespace fcp::test {

namespace {

using MessageHandlerContainer = HandlerFixture;

// Every container command with the arguments that it needs.
std::vector<Json> containerRequests() {
    return {{{"command", "syncComment"}, {"text", "hi"}},
            {{"command", "deleteComment"}, {"commentId", "c1"}},
            {{"command", "syncAllComments"}, {"comments", Json::array()}},
            {{"command", "clearAllMarkers"}},
            {{"command", "startExport"}, {"config", Json::object()}},
            {{"command", "cancelExport"}},
            {{"command", "selectOutputFolder"}},
            {{"command", "getMarkerAtTime"}, {"seconds", 1}}};
}

TEST_F(MessageHandlerContainer, AnswersEveryContainerCommandFalseAtOnceBeforeTheBridgeIsSet) {
    for (auto const& request : containerRequests())
        EXPECT_EQ(ask(request), Json(false)) << request;
}

TEST_F(MessageHandlerContainer, RepeatsNoRequestOnceTheBridgeIsSet) {
    static_cast<void>(ask({{"command", "clearAllMarkers"}}));
    attachBridge();
    platform.mainLoop.runPosted();
    EXPECT_TRUE(bridge->calls.empty());
}

TEST_F(MessageHandlerContainer, UsesTheLatestBridge) {
    attachBridge();
    auto const second = std::make_shared<FakeContainerBridge>(journal);
    handler->setContainerBridge(second);
    post({{"command", "openURL"}, {"url", "https://a.test/"}});
    EXPECT_TRUE(bridge->calls.empty());
    EXPECT_EQ(second->calls.size(), 1U);
}

TEST_F(MessageHandlerContainer, HandsSyncCommentTheWholeMessage) {
    attachBridge();
    Json const message{{"command", "syncComment"}, {"resolveId", "r"}, {"text", "Logo too small"}};
    post(message);
    ASSERT_EQ(bridge->calls.size(), 1U);
    EXPECT_EQ(bridge->calls[0].operation, "syncComment");
    EXPECT_EQ(bridge->calls[0].argument, message);
    bridge->flags.front().resume(true);
    EXPECT_EQ(page->answerTo("r"), Json(true));
}

TEST_F(MessageHandlerContainer, HandsDeleteCommentTheIdentifier) {
    attachBridge();
    EXPECT_EQ(ask({{"command", "deleteComment"}, {"commentId", "c7"}}), std::nullopt);
    EXPECT_EQ(bridge->calls.at(0).argument, "c7");
    bridge->flags.front().resume(false);
    EXPECT_EQ(lastAnswer(), Json(false));
}

TEST_F(MessageHandlerContainer, HandsSyncAllCommentsTheListAnEmptyOneIncluded) {
    attachBridge();
    Json const comments = Json::array({{{"id", "a"}}, Json::object()});
    post({{"command", "syncAllComments"}, {"comments", comments}});
    post({{"command", "syncAllComments"}, {"comments", Json::array()}});
    EXPECT_EQ(bridge->calls.at(0).argument, comments);
    EXPECT_EQ(bridge->calls.at(1).argument, Json::array());
    bridge->flags.front().resume(true);
    bridge->flags.back().resume(true);
}

TEST_F(MessageHandlerContainer, HandsStartExportItsConfigAlone) {
    attachBridge();
    post({{"command", "startExport"}, {"config", {{"format", "csv"}}}, {"extra", 1}});
    EXPECT_EQ(bridge->calls.at(0).argument, (Json{{"format", "csv"}}));
    bridge->flags.front().resume(true);
}

TEST_F(MessageHandlerContainer, NeverAnswersDeleteCommentWithoutAStringCommentId) {
    attachBridge();
    EXPECT_EQ(ask({{"command", "deleteComment"}}), std::nullopt);
    EXPECT_EQ(ask({{"command", "deleteComment"}, {"commentId", 7}}), std::nullopt);
    platform.mainLoop.advance(Seconds(120));
    EXPECT_TRUE(page->scripts.empty());
    EXPECT_TRUE(bridge->calls.empty());
}

TEST_F(MessageHandlerContainer, NeverAnswersSyncAllCommentsWithoutAnArrayOfDictionaries) {
    attachBridge();
    EXPECT_EQ(ask({{"command", "syncAllComments"}}), std::nullopt);
    for (auto const& odd : {Json("[]"), Json::object(), Json(nullptr), Json::array({Json::object(), 5}),
                            Json::array({Json::array()}), Json::array({nullptr})})
        EXPECT_EQ(ask({{"command", "syncAllComments"}, {"comments", odd}}), std::nullopt) << odd;
    platform.mainLoop.advance(Seconds(120));
    EXPECT_TRUE(page->scripts.empty());
    EXPECT_TRUE(bridge->calls.empty());
}

TEST_F(MessageHandlerContainer, NeverAnswersStartExportWithoutADictionaryConfig) {
    attachBridge();
    EXPECT_EQ(ask({{"command", "startExport"}}), std::nullopt);
    for (auto const& odd : {Json("csv"), Json::array(), Json(true), Json(nullptr)})
        EXPECT_EQ(ask({{"command", "startExport"}, {"config", odd}}), std::nullopt) << odd;
    platform.mainLoop.advance(Seconds(120));
    EXPECT_TRUE(page->scripts.empty());
    EXPECT_TRUE(bridge->calls.empty());
}

TEST_F(MessageHandlerContainer, LeavesMalformedRequestsUnansweredWithoutABridgeToo) {
    for (auto const* const command : {"deleteComment", "syncAllComments", "startExport"})
        EXPECT_EQ(ask({{"command", command}}), std::nullopt) << command;
}

TEST_F(MessageHandlerContainer, AnswersSelectOutputFolderWithTheFolderOrNoValue) {
    attachBridge();
    static_cast<void>(ask({{"command", "selectOutputFolder"}}));
    bridge->folders.back().resume("/home/ana/Exports");
    EXPECT_EQ(lastAnswer(), Json("/home/ana/Exports"));
    static_cast<void>(ask({{"command", "selectOutputFolder"}}));
    bridge->folders.back().resume(std::nullopt);
    EXPECT_EQ(lastAnswer(), Json(nullptr));
}

TEST_F(MessageHandlerContainer, AsksForAMarkerWithAThresholdOfHalfASecondWhenNoneIsGiven) {
    attachBridge();
    static_cast<void>(ask({{"command", "getMarkerAtTime"}, {"seconds", 30}}));
    static_cast<void>(ask({{"command", "getMarkerAtTime"}, {"seconds", 30}, {"threshold", 2}}));
    static_cast<void>(ask({{"command", "getMarkerAtTime"}, {"seconds", 30}, {"threshold", "2"}}));
    EXPECT_EQ(bridge->calls.at(0).argument, (Json{30.0, 0.5}));
    EXPECT_EQ(bridge->calls.at(1).argument, (Json{30.0, 2.0}));
    EXPECT_EQ(bridge->calls.at(2).argument, (Json{30.0, 0.5}));
    for (auto& marker : bridge->markers)
        marker.resume(std::nullopt);
    EXPECT_EQ(lastAnswer(), Json(nullptr));
}

TEST_F(MessageHandlerContainer, AnswersGetMarkerAtTimeWithTheMarkerUnchanged) {
    attachBridge();
    static_cast<void>(ask({{"command", "getMarkerAtTime"}, {"seconds", 42}}));
    Json const marker{{"id", "c1"}, {"seconds", 41.8}};
    bridge->markers.back().resume(marker);
    EXPECT_EQ(lastAnswer(), marker);
}

TEST_F(MessageHandlerContainer, AnswersGetMarkerAtTimeWithoutSecondsWithNoValueWithAndWithoutABridge) {
    EXPECT_EQ(ask({{"command", "getMarkerAtTime"}}), Json(nullptr));
    attachBridge();
    EXPECT_EQ(ask({{"command", "getMarkerAtTime"}}), Json(nullptr));
    EXPECT_EQ(ask({{"command", "getMarkerAtTime"}, {"seconds", true}}), Json(nullptr));
    EXPECT_TRUE(bridge->calls.empty());
}

TEST_F(MessageHandlerContainer, OpensALinkAndAnswersTrueAtOnce) {
    attachBridge();
    EXPECT_EQ(ask({{"command", "openURL"}, {"url", "https://a.test/"}}), Json(true));
    EXPECT_EQ(bridge->calls.at(0).argument, "https://a.test/");
}

TEST_F(MessageHandlerContainer, AnswersOpenURLTrueThoughNothingWasOpened) {
    EXPECT_EQ(ask({{"command", "openURL"}, {"url", "https://a.test/"}}), Json(true));
    attachBridge();
    EXPECT_EQ(ask({{"command", "openURL"}}), Json(true));
    EXPECT_EQ(ask({{"command", "openURL"}, {"url", 5}}), Json(true));
    EXPECT_TRUE(bridge->calls.empty());
}

TEST_F(MessageHandlerContainer, StartsTheOperationInsideTheCallAndAnswersWhenItCompletes) {
    attachBridge();
    EXPECT_EQ(ask({{"command", "clearAllMarkers"}}), std::nullopt);
    EXPECT_EQ(bridge->calls.size(), 1U);
    bridge->flags.front().resume(true);
    EXPECT_EQ(lastAnswer(), Json(true)); // on the spot, without another turn of the loop
}

TEST_F(MessageHandlerContainer, AnswersOnTheNextTurnWhenTheBridgeCompletesInsideTheCall) {
    attachBridge();
    bridge->onWait = [this] { bridge->flags.back().resume(true); };
    EXPECT_EQ(ask({{"command", "cancelExport"}}), std::nullopt);
    platform.mainLoop.runPosted();
    EXPECT_EQ(lastAnswer(), Json(true));
}

TEST_F(MessageHandlerContainer, AnswersFalseWhenAnOperationFails) {
    attachBridge();
    static_cast<void>(ask({{"command", "startExport"}, {"config", Json::object()}}));
    bridge->flags.back().fail({"no disk"});
    EXPECT_EQ(lastAnswer(), Json(false));
    static_cast<void>(ask({{"command", "selectOutputFolder"}}));
    bridge->folders.back().fail({"no dialog"});
    EXPECT_EQ(lastAnswer(), Json(false));
    static_cast<void>(ask({{"command", "getMarkerAtTime"}, {"seconds", 1}}));
    bridge->markers.back().fail({"no store"});
    EXPECT_EQ(lastAnswer(), Json(false));
}

TEST_F(MessageHandlerContainer, AnswersInTheOrderInWhichTheContainerDoes) {
    attachBridge();
    post({{"command", "cancelExport"}, {"resolveId", "first"}});
    post({{"command", "clearAllMarkers"}, {"resolveId", "second"}});
    bridge->flags.back().resume(true);
    bridge->flags.front().resume(false);
    EXPECT_EQ(page->events().at(0).detail.at("resolveId"), "second");
    EXPECT_EQ(page->events().at(1).detail.at("resolveId"), "first");
}

TEST_F(MessageHandlerContainer, SendsTheAnswerThoughThePanelHasLetTheHandlerGo) {
    attachBridge();
    post({{"command", "clearAllMarkers"}, {"resolveId", "r"}});
    std::weak_ptr const weak = handler;
    handler = nullptr;
    EXPECT_FALSE(weak.expired());
    bridge->flags.front().resume(true);
    bridge->flags.clear();
    EXPECT_EQ(page->answerTo("r"), Json(true));
    EXPECT_TRUE(weak.expired());
}

TEST_F(MessageHandlerContainer, KeepsTheBridgeUntilItsOperationEnds) {
    attachBridge();
    post({{"command", "clearAllMarkers"}, {"resolveId", "r"}});
    std::weak_ptr const weak = bridge;
    auto pending = std::move(bridge->flags);
    handler->setContainerBridge(nullptr);
    bridge = nullptr;
    EXPECT_FALSE(weak.expired());
    pending.front().resume(true);
    pending.clear();
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(page->answerTo("r"), Json(true));
}

TEST_F(MessageHandlerContainer, DropsTheAnswerWhenThePageIsGone) {
    attachBridge();
    post({{"command", "clearAllMarkers"}, {"resolveId", "r"}});
    page = nullptr;
    journal.take();
    bridge->flags.front().resume(true);
    EXPECT_EQ(journal.lines(), Lines{});
}

} // namespace

} // namespace fcp::test
