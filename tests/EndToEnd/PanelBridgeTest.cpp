#include "PanelHarness.h"

#include <gtest/gtest.h>

#include <thread>

namespace fcp::test {

namespace {

class PanelBridge : public testing::Test {
protected:
    PanelBridge() { panel.connect(); }

    PanelHarness panel;
};

Json const sequenceInfo{{"name", "Interview"}, {"duration", 10.5}, {"frameRate", 29.97},
                        {"width", 0},          {"height", 0},      {"startTimecode", "00:00:00:00"}};

TEST_F(PanelBridge, SendsTheSequenceAfterTheConnection) {
    ASSERT_TRUE(panel.waitForEvent("fcp:sequence-changed"));
    EXPECT_EQ(panel.inPage("return heard.slice(0, 2).map(event => event.name)"),
              (Json{"fcp:connected", "fcp:sequence-changed"}));
    EXPECT_EQ(panel.details("fcp:connected")[0], Json::object());
    EXPECT_EQ(panel.details("fcp:sequence-changed")[0], sequenceInfo);
}

TEST_F(PanelBridge, AnswersTheHostCommands) {
    panel.timeline().playhead = mediaTime(25, 2);
    EXPECT_EQ(panel.ask({{"command", "getTimeline"}}), sequenceInfo);
    EXPECT_EQ(panel.ask({{"command", "getPlayhead"}}), 12.5);
    EXPECT_EQ(panel.ask({{"command", "seekTo"}, {"seconds", 2.5}}), true);
    EXPECT_EQ(panel.timeline().moves.at(0).value, 1500);
    EXPECT_EQ(panel.timeline().moves.at(0).timescale, 600);
    EXPECT_EQ(panel.ask({{"command", "isFCPRunning"}}), true);
    EXPECT_EQ(panel.ask({{"command", "GetTimeline"}}), nullptr);
}

TEST_F(PanelBridge, CarriesNonFiniteSecondsFromThePage) {
    panel.inPage("webkit.messageHandlers.fcpBridge.postMessage({command: 'seekTo', seconds: NaN})");
    panel.inPage("webkit.messageHandlers.fcpBridge.postMessage({command: 'seekTo', seconds: Infinity})");
    ASSERT_TRUE(waitUntil([this] { return panel.timeline().moves.size() == 2; }));
    EXPECT_EQ(panel.ask({{"command", "isFCPRunning"}}), true);
}

TEST_F(PanelBridge, CarriesTextOutsideAsciiAsOneCharacterPerByte) {
    panel.timeline().sequence->sequenceName = "Caf\u00E9";
    auto const name = panel.ask({{"command", "getTimeline"}}).at("name");
    EXPECT_EQ(name, "Caf\u00C3\u00A9"); // a page repairs it: one character for each of the two bytes
}

TEST_F(PanelBridge, TellsThePagesConsoleWhenAnEventCannotBeDispatched) {
    panel.inPage("window.errors = []; console.error = (...all) => errors.push(all.map(String)); "
                 "window.dispatchEvent = () => { throw new Error('closed') }");
    panel.timeline().notifyPlayhead(1.0);
    ASSERT_TRUE(waitUntil([this] { return panel.inPage("return errors.length") == 1; }));
    EXPECT_EQ(panel.inPage("return errors[0]"),
              (Json{"[Zelvix] Failed to dispatch fcp:playhead-changed:", "Error: closed"}));
}

TEST_F(PanelBridge, FollowsTheHostsPlayheadAndSequence) {
    for (double const seconds : {1.0, 1.04, 1.08})
        panel.timeline().notifyPlayhead(seconds);
    panel.timeline().sequence->sequenceName = "Reel 2";
    panel.timeline().notifySequence();
    ASSERT_TRUE(waitUntil([this] {
        auto const sequences = panel.details("fcp:sequence-changed");
        return !sequences.empty() && sequences.back().at("name") == "Reel 2";
    }));
    EXPECT_EQ(panel.details("fcp:playhead-changed"),
              (Json{{{"seconds", 1.0}}, {{"seconds", 1.04}}, {{"seconds", 1.08}}}));
}

TEST_F(PanelBridge, FollowsAHostThatNotifiesOnAnotherThread) {
    std::thread host([this] {
        for (int i = 1; i <= 500; ++i)
            panel.timeline().notifyPlayhead(i * 0.01);
    });
    host.join();
    ASSERT_TRUE(panel.waitForEvent("fcp:playhead-changed", 500));
    EXPECT_EQ(panel.inPage("return heard.filter(event => event.name === 'fcp:playhead-changed')"
                           ".every((event, i) => event.detail.seconds === (i + 1) * 0.01 || "
                           "Math.abs(event.detail.seconds - (i + 1) * 0.01) < 1e-9)"),
              true);
}

TEST_F(PanelBridge, AnswersEveryContainerCommandOverTheBus) {
    std::map<std::string, Json> const results{{"openURL", nullptr},
                                              {"syncComment", true},
                                              {"deleteComment", true},
                                              {"syncAllComments", false},
                                              {"clearAllMarkers", "true"},
                                              {"startExport", true},
                                              {"cancelExport", nullptr},
                                              {"selectOutputFolder", "/home/ana"},
                                              {"getMarkerAtTime", {{"id", "c1"}, {"start", 2.0}}}};
    TestContainer container(panel.mainLoop, [&results](Json const& command) {
        return results.at(command.at("command").get<std::string>());
    });
    EXPECT_EQ(panel.ask({{"command", "openURL"}, {"url", "https://a.test/"}}), true);
    EXPECT_EQ(panel.ask({{"command", "syncComment"}, {"text", "hi"}}), true);
    EXPECT_EQ(panel.ask({{"command", "deleteComment"}, {"commentId", "c1"}}), true);
    EXPECT_EQ(panel.ask({{"command", "syncAllComments"}, {"comments", {{{"id", "c1"}}}}}), false);
    EXPECT_EQ(panel.ask({{"command", "clearAllMarkers"}}), false); // a text is no boolean
    EXPECT_EQ(panel.ask({{"command", "startExport"}, {"config", {{"format", "csv"}}}}), true);
    EXPECT_EQ(panel.ask({{"command", "cancelExport"}}), false);
    EXPECT_EQ(panel.ask({{"command", "selectOutputFolder"}}), "/home/ana");
    EXPECT_EQ(panel.ask({{"command", "getMarkerAtTime"}, {"seconds", 2}}),
              (Json{{"id", "c1"}, {"start", 2.0}}));
    EXPECT_EQ(container.commands.at(1).at("comment").at("text"), "hi");
    EXPECT_EQ(container.commands.at(5).at("format"), "csv");
}

TEST_F(PanelBridge, AnswersFalseOrNoValueWhenNoContainerAnswersWithinAMinute) {
    panel.post({{"command", "clearAllMarkers"}});
    panel.post({{"command", "selectOutputFolder"}});
    panel.mainLoop.elapse(Seconds(59.9));
    EXPECT_EQ(panel.ask({{"command", "isFCPRunning"}}), true); // has passed whatever was answered before it
    EXPECT_EQ(panel.heard("fcp:resolve"), 1);
    panel.mainLoop.elapse(Seconds(0.2));
    ASSERT_TRUE(panel.waitForEvent("fcp:resolve", 3));
    EXPECT_EQ(panel.details("fcp:resolve")[1].at("value"), "false");
    EXPECT_EQ(panel.details("fcp:resolve")[2].at("value"), "null");
}

TEST_F(PanelBridge, IgnoresHostileAnswersAndTakesTheRightOneOnce) {
    TestContainer container(panel.mainLoop, [](Json const&) { return std::nullopt; });
    panel.post({{"command", "clearAllMarkers"}});
    ASSERT_TRUE(waitUntil([&] { return container.commands.size() == 1; }));
    auto const requestId = container.commands[0].at("requestId");
    for (auto const& odd :
         {Json::object(), Json{{"requestId", 1}}, Json{{"requestId", nullptr}, {"result", true}},
          Json{{"requestId", "req-1-"}, {"result", true}}, Json{{"requestId", {requestId}}}})
        container.respond(odd);
    container.respond({{"requestId", requestId}, {"result", true}});
    container.respond({{"requestId", requestId}, {"result", false}});
    ASSERT_TRUE(panel.waitForEvent("fcp:resolve"));
    EXPECT_EQ(panel.ask({{"command", "isFCPRunning"}}), true);
    panel.mainLoop.elapse(Seconds(61));
    EXPECT_EQ(panel.heard("fcp:resolve"), 2);
    EXPECT_EQ(panel.details("fcp:resolve")[0].at("value"), "true");
}

TEST_F(PanelBridge, RaisesAMarkerClickForAJumpOntoAComment) {
    TestContainer container(panel.mainLoop, [](Json const& command) -> std::optional<Json> {
        EXPECT_EQ(command.at("threshold"), 0.5);
        return Json{{"id", "c1"}, {"text", "Logo too small"}, {"seconds", 7.9}};
    });
    panel.timeline().notifyPlayhead(1.0);
    panel.timeline().notifyPlayhead(8.0);
    ASSERT_TRUE(panel.waitForEvent("fcp:marker-clicked"));
    EXPECT_EQ(panel.details("fcp:marker-clicked")[0],
              (Json{{"id", "c1"}, {"text", "Logo too small"}, {"seconds", 8.0}}));
}

TEST_F(PanelBridge, RaisesNoMarkerClickForThePagesOwnSeek) {
    TestContainer container(panel.mainLoop, [](Json const&) { return Json{{"id", "c1"}}; });
    panel.timeline().notifyPlayhead(1.0);
    panel.timeline().onMove = [this] { panel.timeline().notifyPlayhead(8.0); };
    EXPECT_EQ(panel.ask({{"command", "seekTo"}, {"seconds", 8}}), true);
    EXPECT_EQ(panel.ask({{"command", "clearAllMarkers"}}), false); // one round trip to the container and back
    EXPECT_EQ(container.commands.size(), 1U);
    EXPECT_EQ(panel.heard("fcp:marker-clicked"), 0);
}

TEST_F(PanelBridge, KeepsWorkingAfterMessagesOfEveryOddKind) {
    panel.inPage(R"(
        const post = body => { try { webkit.messageHandlers.fcpBridge.postMessage(body) } catch {} };
        const cyclic = {command: 'isFCPRunning', resolveId: 'cyclic'}; cyclic.self = cyclic;
        let deep = 1; for (let i = 0; i < 600; ++i) deep = [deep];
        for (const body of [undefined, null, true, 5, 'getTimeline', [], [{command: 'getTimeline'}], new Date(), new Map(),
                            10n, NaN, cyclic, {command: ['getTimeline']}, {command: null},
                            {command: 'syncComment', resolveId: 'deep', deep},
                            {command: 'isFCPRunning', resolveId: 'lone \uD800 surrogate'},
                            {command: 'isFCPRunning', resolveId: 'nul \0 inside'},
                            {command: 'isFCPRunning', resolveId: 'x'.repeat(10 * 1024 * 1024)}])
            post(body);
    )");
    EXPECT_EQ(panel.ask({{"command", "isFCPRunning"}}), true);
    auto const identifiers =
        panel.inPage("return heard.filter(event => event.name === 'fcp:resolve').map(event => "
                     "event.detail.resolveId.length > 100 ? 'long' : event.detail.resolveId)");
    // The lone surrogate became U+FFFD, which the page reads as its three bytes. The two that are cyclic or
    // nest too deep are dropped.
    EXPECT_EQ(identifiers, (Json{"lone \u00EF\u00BF\u00BD surrogate", std::string("nul \0 inside", 12),
                                 "long", "page-1"}));
}

TEST_F(PanelBridge, SendsAnAnswerOfAnOldRequestIntoThePageThatIsThereThen) {
    TestContainer container(panel.mainLoop, [](Json const&) { return std::nullopt; });
    panel.post({{"command", "clearAllMarkers"}});
    ASSERT_TRUE(waitUntil([&] { return container.commands.size() == 1; }));
    panel.inPage("setTimeout(() => location.reload())");
    ASSERT_TRUE(waitUntil([this] { return panel.journal.only({"info: didFinish"}).size() == 2; }));
    container.respond({{"requestId", container.commands[0].at("requestId")}, {"result", true}});
    ASSERT_TRUE(panel.waitForEvent("fcp:resolve"));
    EXPECT_EQ(panel.details("fcp:resolve")[0].at("resolveId"), "page-1");
}

} // namespace

} // namespace fcp::test
