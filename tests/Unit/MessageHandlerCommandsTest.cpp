#include "HandlerFixture.h"

#include <cmath>
#include <limits>

namespace fcp::test {

namespace {

using MessageHandlerCommands = HandlerFixture;

TEST_F(MessageHandlerCommands, CannotBeCopiedOrMoved) {
    static_assert(!std::is_copy_constructible_v<MessageHandler> &&
                  !std::is_move_constructible_v<MessageHandler>);
}

TEST_F(MessageHandlerCommands, AnswersGetTimelineWithTheSequenceInfo) {
    auto const answer = ask({{"command", "getTimeline"}}).value();
    EXPECT_EQ(answer, (Json{{"name", "Interview"},
                            {"duration", 10.5},
                            {"frameRate", 29.97},
                            {"width", 0},
                            {"height", 0},
                            {"startTimecode", "00:00:00:00"}}));
    EXPECT_TRUE(answer.at("width").is_number_integer());
}

TEST_F(MessageHandlerCommands, AnswersGetTimelineWithNoValueWithoutASequence) {
    platform.timeline().sequence = nullptr;
    EXPECT_EQ(ask({{"command", "getTimeline"}}), Json(nullptr));
    EXPECT_EQ(page->events().back().detail.at("value"), "null");
}

TEST_F(MessageHandlerCommands, AnswersGetTimelineWithNoValueWhenItsNumbersCannotBeWritten) {
    platform.timeline().sequence->length = {0, 0, CMTime::Valid | CMTime::PositiveInfinity, 0};
    EXPECT_EQ(ask({{"command", "getTimeline"}}), Json(nullptr));
}

TEST_F(MessageHandlerCommands, AnswersGetPlayheadWithTheSeconds) {
    platform.timeline().playhead = mediaTime(25, 2);
    EXPECT_EQ(ask({{"command", "getPlayhead"}}), Json(12.5));
}

TEST_F(MessageHandlerCommands, SeeksToTheSecondsAndAnswersTrue) {
    EXPECT_EQ(ask({{"command", "seekTo"}, {"seconds", 12.5}}), Json(true));
    ASSERT_EQ(platform.timeline().moves.size(), 1U);
    EXPECT_EQ(platform.timeline().moves[0].value, 7500);
}

TEST_F(MessageHandlerCommands, SeeksToAnIntegerLikeToAnyNumber) {
    EXPECT_EQ(ask({{"command", "seekTo"}, {"seconds", 3}}), Json(true));
    EXPECT_EQ(platform.timeline().moves.at(0).value, 1800);
}

TEST_F(MessageHandlerCommands, AnswersSeekToTrueThoughSecondsIsMissingOrNoNumber) {
    EXPECT_EQ(ask({{"command", "seekTo"}}), Json(true));
    for (auto const& odd : {Json("12"), Json(true), Json(nullptr), Json::array({1}), Json{{"value", 1}}})
        EXPECT_EQ(ask({{"command", "seekTo"}, {"seconds", odd}}), Json(true)) << odd;
    EXPECT_TRUE(platform.timeline().moves.empty());
}

TEST_F(MessageHandlerCommands, SeeksSafelyToHugeAndNonFiniteSeconds) {
    for (double const seconds : {1e300, -1e300, std::nan(""), HUGE_VAL})
        EXPECT_EQ(ask({{"command", "seekTo"}, {"seconds", seconds}}), Json(true));
    EXPECT_EQ(platform.timeline().moves.size(), 4U);
}

TEST_F(MessageHandlerCommands, AnswersIsFCPRunningTrueEvenWithoutAHost) {
    platform.hostRuntime.host = nullptr;
    handler = MessageHandler::create(page, platform.ports);
    EXPECT_EQ(ask({{"command", "isFCPRunning"}}), Json(true));
}

TEST_F(MessageHandlerCommands, AnswersHostCommandsWithDefaultsWithoutAHost) {
    platform.hostRuntime.host = nullptr;
    handler = MessageHandler::create(page, platform.ports);
    EXPECT_EQ(ask({{"command", "getTimeline"}}), Json(nullptr));
    EXPECT_EQ(ask({{"command", "getPlayhead"}}), Json(0.0));
    EXPECT_EQ(ask({{"command", "seekTo"}, {"seconds", 2}}), Json(true));
}

TEST_F(MessageHandlerCommands, AnswersUnknownCommandsWithNoValueCaseIncluded) {
    for (auto const* const command :
         {"GetTimeline", "gettimeline", " getTimeline", "", "quit", "getTimeline\n"})
        EXPECT_EQ(ask({{"command", command}}), Json(nullptr)) << command;
}

TEST_F(MessageHandlerCommands, IgnoresMessagesUnderAnotherName) {
    FakeUserContentController controller(journal);
    for (auto const* const name : {"fcpbridge", "other", ""})
        handler->userContentController(controller, {name, {{"command", "isFCPRunning"}, {"resolveId", "r"}}});
    EXPECT_TRUE(page->scripts.empty());
}

TEST_F(MessageHandlerCommands, IgnoresBodiesThatAreNoDictionary) {
    for (auto const& body :
         {Json("getTimeline"), Json(5), Json(true), Json(nullptr), Json::array({"command"})})
        post(body);
    EXPECT_TRUE(page->scripts.empty());
}

TEST_F(MessageHandlerCommands, IgnoresAMissingOrNonStringCommandThoughAnAnswerWasAskedFor) {
    EXPECT_EQ(ask(Json::object()), std::nullopt);
    for (auto const& command : {Json(1), Json(true), Json(nullptr), Json::array(), Json::object()})
        EXPECT_EQ(ask({{"command", command}}), std::nullopt) << command;
    EXPECT_TRUE(page->scripts.empty());
}

TEST_F(MessageHandlerCommands, RunsTheCommandButNeverAnswersWithoutAStringResolveId) {
    for (auto const& resolveId : {Json(nullptr), Json(5), Json(true), Json::array({"r"})})
        post({{"command", "seekTo"}, {"seconds", 1}, {"resolveId", resolveId}});
    post({{"command", "seekTo"}, {"seconds", 1}});
    EXPECT_EQ(platform.timeline().moves.size(), 5U);
    EXPECT_TRUE(page->scripts.empty());
}

TEST_F(MessageHandlerCommands, ReturnsTheResolveIdExactlyAsThePageSentIt) {
    std::string const odd("a'\"\\</script>\0\u00E9", 16);
    post({{"command", "isFCPRunning"}, {"resolveId", odd}});
    EXPECT_EQ(page->events().at(0).detail.at("resolveId"), odd);
    post({{"command", "isFCPRunning"}, {"resolveId", ""}});
    EXPECT_EQ(page->events().at(1).detail.at("resolveId"), "");
}

TEST_F(MessageHandlerCommands, ReadsRepeatedRequestsAsRequestsOfTheirOwn) {
    for (int i = 0; i < 2; ++i)
        post({{"command", "isFCPRunning"}, {"resolveId", "same"}});
    EXPECT_EQ(page->scripts.size(), 2U);
}

TEST_F(MessageHandlerCommands, SurvivesACommandThatEndsThePanel) {
    platform.timeline().onMove = [this] {
        handler = nullptr;
        page = nullptr;
    };
    FakeUserContentController controller(journal);
    auto& borrowed = *handler;
    borrowed.userContentController(
        controller, {"fcpBridge", {{"command", "seekTo"}, {"seconds", 1}, {"resolveId", "r"}}});
    EXPECT_EQ(handler, nullptr);
    EXPECT_EQ(journal.count("timeline remove"), 1); // and it is gone now that the call is over
}

} // namespace

} // namespace fcp::test
