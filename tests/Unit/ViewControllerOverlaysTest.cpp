#include "PanelFixture.h"

namespace fcp::test {

namespace {

class ViewControllerOverlays : public PanelFixture {
protected:
    ViewControllerOverlays() { loadPanel(); }

    [[nodiscard]] long connectedNotices() const { return journal.count("event fcp:connected"); }
};

TEST_F(ViewControllerOverlays, ShowTheLoadingOverlayAndScheduleBothTimersFirst) {
    EXPECT_TRUE(loadingOverlay().visible);
    EXPECT_FALSE(errorOverlay().visible);
    EXPECT_EQ(platform.mainLoop.deadlines(),
              (std::multimap<Seconds, bool>{{Seconds(4), false}, {Seconds(30), false}}));
}

TEST_F(ViewControllerOverlays, LieAboveTheWebViewInTheContainer) {
    Lines names;
    for (auto const& subview : platform.userInterface.installed->subviews)
        names.push_back(subview->name);
    EXPECT_EQ(names, (Lines{"web view 2", "loading overlay", "error overlay"}));
}

TEST_F(ViewControllerOverlays, RevealTheWebViewAfter4SecondsWhateverTheLoadDoes) {
    platform.mainLoop.advance(Seconds(3.999));
    EXPECT_TRUE(loadingOverlay().visible);
    platform.mainLoop.advance(Seconds(0.001));
    EXPECT_EQ(journal.lines(),
              (Lines{"info: Auto-reveal timer fired — hiding overlay",
                     "info: hideLoadingOverlay — revealing WebView", "loading overlay hide"}));
    EXPECT_FALSE(loadingOverlay().visible);
}

TEST_F(ViewControllerOverlays, TellAPageThatLoadsFor10SecondsTwiceThatItIsConnected) {
    platform.mainLoop.advance(Seconds(4.499));
    EXPECT_EQ(connectedNotices(), 0);
    platform.mainLoop.advance(Seconds(0.001));
    EXPECT_EQ(connectedNotices(), 1);
    platform.mainLoop.advance(Seconds(5.5));
    controller->didFinish(*webView());
    platform.mainLoop.advance(Seconds(0.499));
    EXPECT_EQ(connectedNotices(), 1);
    platform.mainLoop.advance(Seconds(0.001));
    EXPECT_EQ(connectedNotices(), 2);
    platform.mainLoop.advance(Seconds(100));
    EXPECT_EQ(connectedNotices(), 2);
    EXPECT_TRUE(journal.only({"error: "}).empty()); // the time-out never fires
}

TEST_F(ViewControllerOverlays, SendTheSequenceAfterTheConnectedNotice) {
    controller->didFinish(*webView());
    platform.mainLoop.advance(Seconds(0.5));
    EXPECT_EQ(webView()->eventNames(), (Lines{"fcp:connected", "fcp:sequence-changed"}));
}

TEST_F(ViewControllerOverlays, StopBothTimersWhenANavigationFinishesAndKeepThemUntilTheNextLoad) {
    controller->didFinish(*webView());
    EXPECT_EQ(platform.mainLoop.pending(), 1U); // the connected notice alone
    journal.take();
    platform.mainLoop.advance(Seconds(60));
    EXPECT_EQ(logLines(), Lines{});
    controller->didFinish(*webView()); // invalidates the same timers once more, which is safe
    retryButton().click();
    EXPECT_EQ(platform.mainLoop.pending(), 3U);
}

TEST_F(ViewControllerOverlays, TurnIntoAnErrorAfter30SecondsOnlyWhenTheRevealWasStopped) {
    // A fresh panel whose reveal timer alone is stopped: nothing in the panel does that by itself.
    class WithoutReveal final : public MainLoop {
    public:
        explicit WithoutReveal(FakeMainLoop& wrapped)
            : loop(wrapped) {}

        [[nodiscard]] bool isMainThread() const override { return loop.isMainThread(); }

        void post(std::function<void()> task) override { loop.post(std::move(task)); }

        void after(Seconds delay, std::function<void()> task) override { loop.after(delay, std::move(task)); }

        [[nodiscard]] std::unique_ptr<Timer> timer(Seconds interval, std::function<void()> task) override {
            auto made = loop.timer(interval, std::move(task));
            if (interval == Seconds(4))
                made->invalidate();
            return made;
        }

        FakeMainLoop& loop;
    };

    FakePlatform fresh;
    WithoutReveal loop(fresh.mainLoop);
    Platform const ports{fresh.fileManager, fresh.hostRuntime,        fresh.logs,      loop,
                         fresh.mediaTimes,  fresh.notificationCenter, fresh.urlParser, fresh.userInterface,
                         fresh.uuids,       fresh.webEngine,          fresh.workspace};
    auto const panel = ViewController::create(ports);
    panel->loadView();
    fresh.journal.take();
    fresh.mainLoop.advance(Seconds(29.999));
    EXPECT_EQ(fresh.journal.lines(), Lines{});
    fresh.mainLoop.advance(Seconds(0.001));
    EXPECT_EQ(
        fresh.journal.lines(),
        (Lines{"error: Load timed out after 30s",
               "error: showError: The workspace took too long to respond. Check your connection and retry.",
               "loading overlay hide", "error overlay show",
               "label Check your connection and try again. setText The workspace took too long to respond. "
               "Check "
               "your connection and retry."}));
}

TEST_F(ViewControllerOverlays, WriteBothTimersLinesToTheDefaultLogWhenTheControllerIsGone) {
    controller = nullptr;
    journal.take();
    platform.mainLoop.advance(Seconds(30));
    EXPECT_EQ(journal.lines(), (Lines{"default info: Auto-reveal timer fired — hiding overlay",
                                      "default error: Load timed out after 30s"}));
}

TEST_F(ViewControllerOverlays, SendNoConnectedNoticeWhenTheControllerIsGone) {
    controller->didFinish(*webView());
    auto const view = webView();
    controller = nullptr;
    journal.take();
    platform.mainLoop.advance(Seconds(1));
    EXPECT_EQ(journal.lines(), Lines{});
}

TEST_F(ViewControllerOverlays, ShowAFailureAfterTheRevealAndFocusTheRetryButtonInAWindow) {
    platform.userInterface.installed->inWindow = true;
    platform.mainLoop.advance(Seconds(5));
    journal.take();
    failProvisionally(-1003);
    EXPECT_EQ(
        journal.lines(),
        (Lines{"error: didFailProvisional: [NSURLErrorDomain:-1003] It broke.",
               "error: showError: Failed to connect to Zelvix. Check your internet connection.",
               "loading overlay hide", "error overlay show",
               "label Check your connection and try again. setText Failed to connect to Zelvix. Check your "
               "internet connection.",
               "container makeFirstResponder button Retry connection"}));
    EXPECT_TRUE(errorOverlay().visible);
    EXPECT_EQ(detailLabel().text, "Failed to connect to Zelvix. Check your internet connection.");
}

TEST_F(ViewControllerOverlays, FocusNothingOutsideAWindow) {
    failProvisionally(-1003);
    EXPECT_EQ(journal.count("container makeFirstResponder button Retry connection"), 0);
}

TEST_F(ViewControllerOverlays, StopBothTimersOnAnError) {
    failProvisionally(-1003);
    EXPECT_EQ(platform.mainLoop.pending(), 0U);
}

TEST_F(ViewControllerOverlays, RetryInTheirOrder) {
    failProvisionally(-1003);
    platform.fileManager.files = {devMarker}; // appeared in between
    journal.take();
    retryButton().click();
    EXPECT_EQ(
        journal.lines(),
        (Lines{"info: retryConnection", "info: showLoading", "loading overlay show", "error overlay hide",
               "label Opening your review workspace… setText Reopening your review workspace…",
               "exists /tmp/zelvix-fcp-diag", "exists /tmp/zelvix-fcp-dev",
               "web view 2 load http://localhost:3000/fcp-panel/login"}));
    EXPECT_EQ(webView()->requests.back().timeout, 60.0);
}

TEST_F(ViewControllerOverlays, RestartBothTimersFromZeroOnARetry) {
    platform.mainLoop.advance(Seconds(3));
    retryButton().click();
    EXPECT_EQ(platform.mainLoop.pending(), 2U);
    platform.mainLoop.advance(Seconds(3.999));
    EXPECT_TRUE(loadingOverlay().visible);
    platform.mainLoop.advance(Seconds(0.001));
    EXPECT_FALSE(loadingOverlay().visible);
}

TEST_F(ViewControllerOverlays, KeepAtMostOneOfEachTimerAliveWhenRetryIsPressedTwice) {
    failProvisionally(-1003);
    retryButton().click();
    platform.mainLoop.advance(Seconds(1));
    retryButton().click();
    EXPECT_EQ(platform.mainLoop.pending(), 2U);
    platform.mainLoop.advance(Seconds(100));
    EXPECT_EQ(journal.count("info: Auto-reveal timer fired — hiding overlay"), 1);
}

TEST_F(ViewControllerOverlays, KeepTheReopeningTextForAllLaterLoads) {
    retryButton().click();
    controller->didFinish(*webView());
    failProvisionally(-1009);
    retryButton().click();
    EXPECT_EQ(statusLabel().text, "Reopening your review workspace…");
}

TEST_F(ViewControllerOverlays, RequestAboutBlankOnARetryInDiagnosticMode) {
    platform.fileManager.files = {diagMarker};
    retryButton().click();
    EXPECT_EQ(webView()->requests.back().url.absoluteString, "about:blank");
    EXPECT_TRUE(webView()->pages.empty());
}

TEST_F(ViewControllerOverlays, LeaveTheErrorVisibleWhenALaterNavigationFinishes) {
    failProvisionally(-1003);
    journal.take();
    controller->didFinish(*webView());
    EXPECT_TRUE(errorOverlay().visible);
    EXPECT_FALSE(loadingOverlay().visible);
    platform.mainLoop.advance(Seconds(0.5));
    EXPECT_EQ(connectedNotices(), 1);
    EXPECT_TRUE(errorOverlay().visible);
}

TEST_F(ViewControllerOverlays, DoNothingForAPressWhenTheControllerIsGone) {
    auto const& button = retryButton();
    controller = nullptr;
    journal.take();
    button.click();
    EXPECT_EQ(journal.lines(), Lines{});
}

} // namespace

} // namespace fcp::test
