#include "PanelHarness.h"

#include "Contract/TestBus.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace fcp::test {

namespace {

Json const clearAllMarkers{{"command", "clearAllMarkers"}};
Json const isRunning{{"command", "isFCPRunning"}};

// The answers that the page got so far, as the texts that they came in.
std::vector<std::string> answers(PanelHarness const& panel) {
    std::vector<std::string> values;
    for (auto const& detail : panel.details("fcp:resolve"))
        values.push_back(detail.at("value"));
    return values;
}

using Answers = std::vector<std::string>;

TEST(PanelFaults, DoesAllButContainerWorkWithoutABus) {
    PanelHarness panel("unix:path=/nonexistent/bus");
    panel.connect();
    panel.post(clearAllMarkers);
    EXPECT_EQ(panel.ask(isRunning), true);
    EXPECT_EQ(panel.ask({{"command", "getTimeline"}}).at("name"), "Interview");
    panel.mainLoop.elapse(Seconds(60));
    ASSERT_TRUE(panel.waitForEvent("fcp:resolve", 3));
    EXPECT_EQ(answers(panel).back(), "false");
}

TEST(PanelFaults, WorksAgainAfterTheBusWasLost) {
    TestBus bus;
    bus.start();
    PanelHarness panel(bus.address());
    panel.connect();
    auto const agree = [](Json const&) { return Json(true); };
    {
        TestContainer const container(panel.mainLoop, agree, bus.address());
        ASSERT_EQ(panel.ask(clearAllMarkers), true);
    }
    bus.kill();
    panel.post(clearAllMarkers);
    EXPECT_EQ(panel.ask(isRunning), true);
    panel.mainLoop.elapse(Seconds(61));
    ASSERT_TRUE(panel.waitForEvent("fcp:resolve", 3));
    EXPECT_EQ(answers(panel), (Answers{"true", "true", "false"}));

    bus.start();
    panel.mainLoop.elapse(Seconds(30)); // the longest pause between two attempts
    auto const choose = [](Json const&) { return Json("/back"); };
    TestContainer const container(panel.mainLoop, choose, bus.address());
    // The panel's connection comes up in its own time: what is asked before is lost and runs into its
    // time-out.
    EXPECT_TRUE(waitUntil([&panel] {
        panel.post({{"command", "selectOutputFolder"}});
        static_cast<void>(panel.ask(isRunning));
        panel.mainLoop.elapse(Seconds(61));
        auto const values = answers(panel);
        return std::ranges::find(values, "\"/back\"") != values.end();
    }));
}

TEST(PanelFaults, AnswersEveryRequestOnceWhenTheContainerDiesInMidCommand) {
    PanelHarness panel;
    panel.connect();
    auto container =
        std::make_unique<TestContainer>(panel.mainLoop, [](Json const&) { return std::nullopt; });
    panel.post(clearAllMarkers);
    ASSERT_TRUE(waitUntil([&] { return container->commands.size() == 1; }));
    auto const first = container->commands[0].at("requestId");
    container = nullptr;
    container = std::make_unique<TestContainer>(panel.mainLoop, [](Json const&) { return Json(true); });
    EXPECT_EQ(panel.ask(clearAllMarkers), true);
    panel.mainLoop.elapse(Seconds(60));
    container->respond({{"requestId", first}, {"result", true}}); // too late
    EXPECT_EQ(panel.ask(clearAllMarkers), true);
    EXPECT_EQ(answers(panel), (Answers{"true", "false", "true"}));
}

TEST(PanelFaults, StaysResponsiveUnderAFloodOfAnswersToNobody) {
    PanelHarness panel;
    panel.connect();
    TestContainer container(panel.mainLoop, [](Json const&) { return Json(true); });
    for (int burst = 0; burst < 10; ++burst) {
        for (int i = 0; i < 10'000; ++i)
            container.respond({{"requestId", "req-" + std::to_string(i) + "-000000"}, {"result", i}});
        EXPECT_EQ(panel.ask(isRunning), true);
    }
    EXPECT_EQ(panel.ask(clearAllMarkers), true); // behind the whole flood
    EXPECT_EQ(panel.heard("fcp:resolve"), 11);
}

TEST(PanelFaults, FollowsATimelineThatVanishesAndComesBack) {
    PanelHarness panel;
    panel.connect();
    auto const timeline = std::exchange(panel.hostRuntime.host->current, nullptr);
    EXPECT_EQ(panel.ask({{"command", "getTimeline"}}), nullptr);
    EXPECT_EQ(panel.ask({{"command", "getPlayhead"}}), 0.0);
    EXPECT_EQ(panel.ask({{"command", "seekTo"}, {"seconds", 3}}), true);
    timeline->notifyPlayhead(5.0);
    panel.hostRuntime.host->current = timeline;
    EXPECT_EQ(panel.ask({{"command", "getTimeline"}}).at("name"), "Interview");
    timeline->notifyPlayhead(6.0);
    ASSERT_TRUE(panel.waitForEvent("fcp:playhead-changed"));
    EXPECT_EQ(panel.details("fcp:playhead-changed"), (Json{{{"seconds", 6.0}}}));
}

TEST(PanelFaults, RunsWithoutAnyHost) {
    PanelHarness panel;
    panel.hostRuntime.host = nullptr;
    panel.connect();
    EXPECT_EQ(panel.heard("fcp:sequence-changed"), 0);
    EXPECT_EQ(panel.ask({{"command", "getTimeline"}}), nullptr);
    EXPECT_EQ(panel.ask({{"command", "getPlayhead"}}), 0.0);
    EXPECT_EQ(panel.ask(isRunning), true);
}

TEST(PanelFaults, LeavesNothingBehindWhenThePanelIsClosedInMidRequest) {
    std::weak_ptr<ViewController> weak;
    {
        PanelHarness panel;
        panel.connect();
        panel.post(clearAllMarkers);
        EXPECT_EQ(panel.ask(isRunning), true);
        weak = panel.controller;
        panel.controller = nullptr;
        EXPECT_TRUE(weak.expired());
        panel.mainLoop.elapse(Seconds(61)); // the request's time-out finds whoever is left
    }
    EXPECT_TRUE(weak.expired());
}

} // namespace

} // namespace fcp::test
