#include "PanelHarness.h"

#include "Doubles/WebProcesses.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace fcp::test {

namespace {

using Texts = std::vector<std::string>;
using Then = ServerAnswer::Then;

std::string const path = "/fcp-panel/login";
std::string const generic = "Failed to connect to Zelvix. Check your internet connection.";
std::string const offline = "You appear to be offline. Reconnect to the internet, then retry.";

class PanelLoading : public testing::Test {
protected:
    [[nodiscard]] bool shows(std::string const& text) const {
        auto const texts = panel.visibleTexts();
        return std::ranges::find(texts, text) != texts.end();
    }

    [[nodiscard]] bool waitFor(std::string const& text) const {
        return waitUntil([&] { return shows(text); });
    }

    // Waits until the engine shows the document of this path.
    [[nodiscard]] bool waitForDocument(std::string const& documentPath) const {
        return waitUntil([&] { return panel.inPage("return location.pathname") == documentPath; });
    }

    // The one failure's line up to its code.
    [[nodiscard]] std::string failure() const {
        auto const lines = panel.journal.only({"error: didFail"});
        return lines.size() == 1 ? lines[0].substr(0, lines[0].find(']') + 1) : std::to_string(lines.size());
    }

    PanelHarness panel;
};

TEST_F(PanelLoading, CoversThePageWhileItLoadsAndRevealsItWhenItHas) {
    panel.serveWitness();
    panel.open();
    EXPECT_EQ(panel.visibleTexts(), Texts{"Opening your review workspace…"});
    ASSERT_TRUE(panel.waitForLine("info: hideLoadingOverlay — revealing WebView"));
    EXPECT_TRUE(panel.visibleTexts().empty());
    EXPECT_EQ(panel.server.requests(), Texts{path});
    EXPECT_EQ(panel.heard("fcp:connected"), 0);
    panel.mainLoop.elapse(Seconds(0.5));
    EXPECT_TRUE(panel.waitForEvent("fcp:connected"));
}

TEST_F(PanelLoading, TellsASlowPageTwiceThatItIsConnectedAndNeverTimesOut) {
    panel.server.answer("/hanging.png", {"", Then::Stall});
    panel.server.answer(path,
                        pageAnswer("<!doctype html><script>window.heard=[];addEventListener('fcp:connected',"
                                   "()=>heard.push({name:'fcp:connected'}))</script><img src=/hanging.png>"));
    panel.open();
    ASSERT_TRUE(waitUntil([this] { return panel.server.stalled() == 1; }));
    panel.mainLoop.elapse(Seconds(4));
    EXPECT_TRUE(panel.visibleTexts().empty());
    panel.mainLoop.elapse(Seconds(6));
    ASSERT_TRUE(panel.waitForEvent("fcp:connected", 1));
    panel.server.endStalled(Then::Close);
    ASSERT_TRUE(panel.waitForLine("info: didFinish: " + panel.server.url(path)));
    panel.mainLoop.elapse(Seconds(100));
    ASSERT_TRUE(panel.waitForEvent("fcp:connected", 2));
    EXPECT_TRUE(panel.journal.only({"error: "}).empty());
}

TEST_F(PanelLoading, ShowsTheOfflineMessageForALostConnectionWithTheRetryButtonFocused) {
    panel.server.answer(path, {"", Then::Reset});
    panel.open();
    ASSERT_TRUE(waitFor("Connection paused"));
    EXPECT_EQ(panel.visibleTexts(),
              (Texts{"ZELVIX / OFFLINE", "Connection paused", offline, "Retry connection"}));
    EXPECT_EQ(failure(), "error: didFailProvisional: [NSURLErrorDomain:-1005]");
    auto* const focused = gtk_window_get_focus(panel.window.gobj());
    ASSERT_TRUE(GTK_IS_BUTTON(focused));
    EXPECT_STREQ(gtk_button_get_label(GTK_BUTTON(focused)), "Retry connection");
}

TEST_F(PanelLoading, ReopensThePageWhenTheRetryButtonIsPressed) {
    panel.server.answer(path, {"", Then::Reset});
    panel.open();
    ASSERT_TRUE(waitFor("Connection paused"));
    panel.serveWitness();
    g_signal_emit_by_name(gtk_window_get_focus(panel.window.gobj()), "clicked");
    EXPECT_EQ(panel.visibleTexts(), Texts{"Reopening your review workspace…"});
    ASSERT_TRUE(panel.waitForLine("info: didFinish: " + panel.server.url(path)));
    EXPECT_TRUE(panel.visibleTexts().empty());
    panel.mainLoop.elapse(Seconds(0.5));
    EXPECT_TRUE(panel.waitForEvent("fcp:connected"));
}

TEST_F(PanelLoading, ShowsTheGenericMessageForAServerThatRefuses) {
    class ClosedPort final : public UrlParser {
    public:
        [[nodiscard]] std::optional<Url> parse(std::string const&) const override {
            return Url{"http://localhost:" + std::to_string(MisbehavingServer::closedPort()) + "/",
                       "localhost"};
        }
    };

    ClosedPort closed;
    panel.open(closed);
    ASSERT_TRUE(waitFor(generic));
    EXPECT_EQ(failure(), "error: didFailProvisional: [NSURLErrorDomain:-1004]");
}

TEST_F(PanelLoading, ShowsTheGenericMessageForAServerThatNeverAnswers) {
    panel.server.answer(path, {"", Then::Stall});
    panel.open();
    ASSERT_TRUE(waitUntil([this] { return panel.server.stalled() == 1; }));
    panel.mainLoop.elapse(Seconds(59));
    EXPECT_FALSE(shows(generic));
    panel.mainLoop.elapse(Seconds(2));
    ASSERT_TRUE(waitFor(generic));
    EXPECT_EQ(failure(), "error: didFailProvisional: [NSURLErrorDomain:-1001]");
}

TEST_F(PanelLoading, ShowsTheGenericMessageForARedirectionWithoutAnEnd) {
    panel.server.answer(path, redirectAnswer(path + "?again"));
    panel.open();
    ASSERT_TRUE(waitFor(generic));
    EXPECT_EQ(failure(), "error: didFailProvisional: [NSURLErrorDomain:-1007]");
}

TEST_F(PanelLoading, ShowsTheGenericMessageWhenACommittedPageBreaksOff) {
    panel.server.answer(path,
                        cutAnswer("<!doctype html><p>half a page" + std::string(2000, ' '), Then::Stall));
    panel.open();
    ASSERT_TRUE(waitForDocument(path));
    panel.server.endStalled(Then::Reset);
    ASSERT_TRUE(waitFor(generic));
    EXPECT_EQ(panel.journal.only({"error: didFail: "}).size(), 1U);
    EXPECT_TRUE(panel.journal.only({"error: didFailProvisional"}).empty());
}

TEST_F(PanelLoading, KeepsTheErrorWhenTheFailedPageIsLeftForOneThatFinishes) {
    panel.connect();
    panel.server.answer("/broken", {"", Then::Reset});
    panel.server.answer("/fine", pageAnswer("fine"));
    panel.inPage("location.href = '/broken'");
    ASSERT_TRUE(waitFor("Connection paused"));
    panel.inPage("location.href = '/fine'");
    ASSERT_TRUE(panel.waitForLine("info: didFinish: " + panel.server.url("/fine")));
    EXPECT_TRUE(shows("Connection paused"));
}

TEST_F(PanelLoading, HandsAboutBlankToTheDesktopInDiagnosticModeSoThatNoPageShows) {
    panel.fileManager.files = {"/tmp/zelvix-fcp-diag", "/tmp/zelvix-fcp-dev"};
    panel.open();
    ASSERT_TRUE(panel.waitForLine("info: Opening external URL: about:blank"));
    panel.mainLoop.elapse(Seconds(4));
    EXPECT_TRUE(panel.visibleTexts().empty()); // revealed by the timer, over nothing
    EXPECT_EQ(panel.inPage("return document.body ? document.body.children.length : 0"), 0);
    EXPECT_EQ(panel.workspace.opened, Texts{"about:blank"});
    EXPECT_TRUE(panel.server.requests().empty());
    EXPECT_TRUE(panel.journal.only({"info: didFinish", "error: "}).empty());
}

TEST_F(PanelLoading, HasTheInspectorAtHand) {
    panel.serveWitness();
    panel.open();
    EXPECT_TRUE(
        webkit_settings_get_enable_developer_extras(webkit_web_view_get_settings(panel.engineView())));
}

TEST_F(PanelLoading, HandsALinkToAForeignHostToTheDesktopAndStays) {
    panel.connect();
    auto const foreign = panel.server.url("/elsewhere", "127.0.0.1");
    panel.inPage("window.stayed = true; location.href = '" + foreign + "'");
    ASSERT_TRUE(panel.waitForLine("open " + foreign));
    EXPECT_EQ(panel.inPage("return window.stayed"), true);
    EXPECT_EQ(panel.journal.only({"debug: navigate policy: " + foreign, "info: Opening", "open"}),
              (Texts{"debug: navigate policy: " + foreign, "info: Opening external URL: " + foreign,
                     "open " + foreign}));
    EXPECT_TRUE(panel.visibleTexts().empty());
    EXPECT_EQ(panel.ask({{"command", "isFCPRunning"}}), true);
}

TEST_F(PanelLoading, HandsAnEmptyFramesAboutBlankToTheDesktop) {
    panel.connect();
    panel.inPage("document.body.append(document.createElement('iframe'))");
    ASSERT_TRUE(panel.waitForLine("open about:blank"));
    EXPECT_EQ(panel.ask({{"command", "isFCPRunning"}}), true);
}

TEST_F(PanelLoading, RecoversByARetryAfterTheWebProcessWasKilled) {
    panel.connect();
    EXPECT_GT(killEngineProcesses(webProcess), 0U);
    ASSERT_TRUE(
        waitUntil([this] { return panel.journal.only({"error: The web process has ended"}).size() == 1; }));
    // The engine keeps a process in reserve, which died too: it must have noticed before it hands that one
    // out.
    ASSERT_TRUE(waitUntil([] { return engineProcesses(webProcess).empty(); }));
    while (Glib::MainContext::get_default()->iteration(false)) {
    }
    testing::internal::CaptureStdout();
    panel.timeline().notifyPlayhead(3.0); // an event into a page that is gone
    panel.controller->retryConnection();
    // An attempt may be handed the dead reserve all the same: a person presses again.
    auto const errors = [this] { return panel.journal.only({"error: "}).size(); };
    auto seen = errors();
    auto const reloaded = waitUntil([&] {
        if (auto const before = std::exchange(seen, errors()); seen > before)
            panel.controller->retryConnection();
        return panel.journal.count("info: didFinish: " + panel.server.url(path)) >= 2;
    });
    auto const printed = testing::internal::GetCapturedStdout();
    ASSERT_TRUE(reloaded) << testing::PrintToString(panel.journal.lines());
    EXPECT_TRUE(printed.starts_with("[Zelvix] evaluateJavaScript error for fcp:playhead-changed: "))
        << printed;
    panel.mainLoop.elapse(Seconds(0.5));
    EXPECT_TRUE(panel.waitForEvent("fcp:connected"));
    EXPECT_EQ(panel.ask({{"command", "isFCPRunning"}}), true);
}

} // namespace

} // namespace fcp::test
