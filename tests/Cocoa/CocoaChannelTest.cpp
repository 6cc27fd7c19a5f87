#include "Cocoa/RunLoop.h"
#include "Contract/ChildProcess.h"
#include "FcpExtension/ContainerAppBridge.h"
#include "Platform/Cocoa/CocoaMainLoop.h"
#include "Platform/Cocoa/CocoaNotificationCenter.h"
#include "Platform/Cocoa/CocoaUuidGenerator.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace fcp::test {

namespace {

// The panel's end of the channel, as the panel uses it. The other end is a process of its own; between them
// are the library's distributed centre and its daemon, which tests/Cocoa/with-notification-daemon starts.
class PanelEnd {
public:
    PanelEnd() {
        EXPECT_EQ(container.readLine(), "ready");
        center.observe("com.zelvix.fcp.containerResponse", [this](Notification const& notification) {
            heard.push_back(notification);
            containerBridge->handleResponse(notification);
        });
    }

    ~PanelEnd() {
        containerBridge->openURL("about:blank");
        EXPECT_EQ(container.wait(), 0);
    }

    PanelEnd(PanelEnd const&) = delete;
    PanelEnd& operator=(PanelEnd const&) = delete;

    [[nodiscard]] ContainerAppBridge& bridge() const { return *containerBridge; }

    [[nodiscard]] Completion<bool> flag() {
        return {"flag", [this](Outcome<bool> const& outcome) { flags.push_back(std::get<0>(outcome)); }};
    }

    [[nodiscard]] Completion<std::optional<std::string>> folder() {
        return {"folder", [this](auto const& outcome) { folders.push_back(std::get<0>(outcome)); }};
    }

    [[nodiscard]] Completion<std::optional<Json>> marker() {
        return {"marker", [this](auto const& outcome) { markers.push_back(std::get<0>(outcome)); }};
    }

    [[nodiscard]] bool waitForEveryAnswer() const {
        return turnRunLoopUntil([this] { return containerBridge->pendingRequestCount() == 0; });
    }

    // Of the last answer.
    [[nodiscard]] Json result() const {
        return heard.back().userInfo.value_or(Json()).value("result", Json("none"));
    }

    void forget() {
        heard.clear();
        flags.clear();
        folders.clear();
        markers.clear();
    }

    std::vector<Notification> heard;
    std::vector<bool> flags;
    std::vector<std::optional<std::string>> folders;
    std::vector<std::optional<Json>> markers;

private:
    ChildProcess container{{CHANNEL_PEER}};
    CocoaNotificationCenter center;
    CocoaUuidGenerator uuids;
    CocoaMainLoop loop;
    std::shared_ptr<ContainerAppBridge> const containerBridge =
        ContainerAppBridge::create(center, uuids, loop);
};

// All cases share one channel, because what observes the centre does so as long as the process lives.
class CocoaChannel : public testing::Test {
protected:
    static void SetUpTestSuite() { sharedEnd = std::make_unique<PanelEnd>(); }

    static void TearDownTestSuite() { sharedEnd.reset(); }

    void SetUp() override { panel.forget(); }

    static inline std::unique_ptr<PanelEnd> sharedEnd;
    PanelEnd& panel = *sharedEnd;
    ContainerAppBridge& bridge = panel.bridge();
};

TEST_F(CocoaChannel, BringsACommandOverUnchangedButForNull) {
    Json const settings{{"format", "csv"},
                        {"count", 3},
                        {"lowest", INT64_MIN},
                        {"highest", UINT64_MAX},
                        {"whole", 2.0},
                        {"half", 0.5},
                        {"text", "Łódź \U0001F600 \uffff"},
                        {"list", {1, "b", Json::array(), {{"c", {2.5}}}}}};
    auto sent = settings;
    sent["nothing"] = nullptr;
    sent["list"].push_back(nullptr);
    sent["list"][3]["nothing"] = nullptr;
    bridge.startExport(sent, panel.flag());
    ASSERT_TRUE(panel.waitForEveryAnswer());
    auto heard = panel.result();
    EXPECT_TRUE(std::regex_match(heard.value("requestId", ""), std::regex("req-[0-9]+-[0-9A-F]{6}")));
    EXPECT_EQ(heard.value("command", ""), "startExport");
    heard.erase("requestId");
    heard.erase("command");
    EXPECT_EQ(heard.dump(), settings.dump()); // an integer is no other number
}

TEST_F(CocoaChannel, BringsACommentThereAndBackAsAMarker) {
    Json const comment{{"id", "c1"},
                       {"start", 12.5},
                       {"text", "Łódź \U0001F600 \u4e2d"},
                       {"author", {{"name", "Zoë"}, {"tags", {"a", Json::array({"b"}), Json::object()}}}}};
    bridge.syncComment(comment, panel.flag());
    bridge.getMarkerAtTime(12.5, 0.5, panel.marker());
    ASSERT_TRUE(panel.waitForEveryAnswer());
    EXPECT_EQ(panel.markers, (std::vector<std::optional<Json>>{comment}));
}

TEST_F(CocoaChannel, HearsNoResultWhereItIsNull) {
    bridge.cancelExport(panel.flag());
    ASSERT_TRUE(panel.waitForEveryAnswer());
    ASSERT_EQ(panel.heard.size(), 1U);
    EXPECT_FALSE(panel.heard[0].userInfo.value().contains("result"));
    EXPECT_EQ(panel.flags, std::vector{false});
}

// On macOS a property list carries booleans as a type of their own. This library archives a boolean as the
// small integer that it is stored as, in both directions, and for the panel an integer is no boolean on any
// system: so the one answer that cannot be had here is "true".
TEST_F(CocoaChannel, HearsIntegersForBooleansHereAndTakesThemForNone) {
    bridge.startExport({{"overwrite", true}, {"draft", false}}, panel.flag());
    ASSERT_TRUE(panel.waitForEveryAnswer());
    EXPECT_EQ(panel.result().value("overwrite", Json()).dump(), "1");
    EXPECT_EQ(panel.result().value("draft", Json()).dump(), "0");
    bridge.syncComment({{"id", "c1"}}, panel.flag());
    ASSERT_TRUE(panel.waitForEveryAnswer());
    EXPECT_EQ(panel.result().dump(), "1");
    EXPECT_EQ(panel.flags, (std::vector{false, false}));
}

TEST_F(CocoaChannel, MatchesRequestsInFlightWithTheirAnswersInAnyOrder) {
    constexpr int requests = 50;
    for (int second = 0; second < requests; ++second)
        bridge.getMarkerAtTime(second, -requests, panel.marker());
    EXPECT_EQ(bridge.pendingRequestCount(), 50U);
    ASSERT_TRUE(panel.waitForEveryAnswer());
    ASSERT_EQ(panel.markers.size(), 50U);
    std::set<std::string> identifiers;
    for (int second = 0; second < requests; ++second) {
        auto const& command = panel.markers[static_cast<std::size_t>(requests - 1 - second)].value();
        EXPECT_EQ(command.at("seconds"), second);
        identifiers.insert(command.at("requestId"));
    }
    EXPECT_EQ(identifiers.size(), 50U);
}

TEST_F(CocoaChannel, IsNotDisturbedByWhatOthersPost) {
    bridge.selectOutputFolder(panel.folder());
    ASSERT_TRUE(panel.waitForEveryAnswer());
    ASSERT_EQ(panel.heard.size(), 4U);
    EXPECT_EQ(panel.heard[0].userInfo, std::nullopt);
    EXPECT_EQ(panel.heard[1].userInfo.value().at("requestId"), 7);
    EXPECT_EQ(panel.heard[2].userInfo.value().at("result"), "foreign");
    EXPECT_EQ(panel.folders, (std::vector<std::optional<std::string>>{"/Volumes/Łódź \U0001F3AC/出力"}));
}

TEST_F(CocoaChannel, CarriesAThousandCommentsAtOnce) {
    auto comments = Json::array();
    for (int number = 0; number < 1000; ++number)
        comments.push_back(
            {{"id", std::to_string(number)}, {"start", number / 8.0}, {"text", "A remark \U0001F600"}});
    bridge.syncAllComments(comments, panel.flag());
    ASSERT_TRUE(panel.waitForEveryAnswer());
    EXPECT_EQ(panel.result().value("comments", Json()), comments);
}

} // namespace

} // namespace fcp::test
