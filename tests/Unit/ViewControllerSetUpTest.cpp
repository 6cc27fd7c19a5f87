#include "PanelFixture.h"

#include "FcpExtension/DiagnosticPage.h"
#include "FcpExtension/ServiceHosts.h"

namespace fcp::test {

namespace {

using ViewControllerSetUp = PanelFixture;

std::string const productionURL = "https://" + std::string(primaryHost) + "/fcp-panel/login";

TEST_F(ViewControllerSetUp, DoesEverythingInItsOrderInProduction) {
    controller->loadView();
    EXPECT_EQ(journal.lines(), (Lines{
                                   "exists /tmp/zelvix-fcp-diag",
                                   "exists /tmp/zelvix-fcp-dev",
                                   "info: loadView starting, panelURL: " + productionURL,
                                   "make content controller",
                                   "make web view 1 with defaults",
                                   "host singleton",
                                   "host timeline",
                                   "timeline add",
                                   "add handler fcpBridge",
                                   "web view 1 destroyed",
                                   "make web view 2",
                                   "web view 2 setNavigationDelegate",
                                   "web view 2 setAutoresizing",
                                   "host singleton",
                                   "host timeline",
                                   "timeline add",
                                   "remove all handlers",
                                   "host timeline",
                                   "timeline remove",
                                   "add handler fcpBridge",
                                   "make container",
                                   "install container",
                                   "container addSubview web view 2",
                                   "make loading overlay",
                                   "make spinner",
                                   "loading overlay addSubview spinner",
                                   "make label Opening your review workspace…",
                                   "loading overlay addSubview label Opening your review workspace…",
                                   "container addSubview loading overlay",
                                   "make error overlay",
                                   "make accent bar",
                                   "error overlay addSubview accent bar",
                                   "make label ZELVIX / OFFLINE",
                                   "error overlay addSubview label ZELVIX / OFFLINE",
                                   "make label Connection paused",
                                   "error overlay addSubview label Connection paused",
                                   "make label Check your connection and try again.",
                                   "error overlay addSubview label Check your connection and try again.",
                                   "make button Retry connection",
                                   "error overlay addSubview button Retry connection",
                                   "container addSubview error overlay",
                                   "info: showLoading",
                                   "loading overlay show",
                                   "error overlay hide",
                                   "exists /tmp/zelvix-fcp-diag",
                                   "exists /tmp/zelvix-fcp-diag",
                                   "exists /tmp/zelvix-fcp-dev",
                                   "web view 2 load " + productionURL,
                                   "info: loadView complete, loading started",
                               }));
}

TEST_F(ViewControllerSetUp, LogsUnderItsSubsystemAndCategory) {
    EXPECT_EQ(platform.logs.subsystem, "ai.zelvix.fcp.extension");
    EXPECT_EQ(platform.logs.category, "ViewController");
}

TEST_F(ViewControllerSetUp, RequestsTheDevelopmentPageWithA60SecondTimeout) {
    platform.fileManager.files = {devMarker};
    controller->loadView();
    ASSERT_EQ(webView()->requests.size(), 1U);
    EXPECT_EQ(webView()->requests[0].url.absoluteString, "http://localhost:3000/fcp-panel/login");
    EXPECT_EQ(webView()->requests[0].timeout, 60.0);
    EXPECT_EQ(journal.lines().at(2),
              "info: loadView starting, panelURL: http://localhost:3000/fcp-panel/login");
}

TEST_F(ViewControllerSetUp, RequestsTheProductionPageWithoutAMarker) {
    controller->loadView();
    ASSERT_EQ(webView()->requests.size(), 1U);
    EXPECT_EQ(webView()->requests[0].url.absoluteString, productionURL);
    EXPECT_TRUE(webView()->pages.empty());
}

TEST_F(ViewControllerSetUp, LoadsTheInlinePageWithBothMarkersAndNeverReadsTheSecond) {
    platform.fileManager.files = {diagMarker, devMarker};
    controller->loadView();
    EXPECT_TRUE(webView()->requests.empty());
    EXPECT_EQ(webView()->pages, Lines{std::string(diagnosticPage)});
    EXPECT_EQ(journal.count("exists /tmp/zelvix-fcp-dev"), 0);
    EXPECT_EQ(journal.lines().at(1), "info: loadView starting, panelURL: about:blank");
    auto const& lines = journal.lines();
    EXPECT_EQ(Lines(lines.end() - 3, lines.end()),
              (Lines{"web view 2 load HTML", "info: Diagnostic mode: loading inline HTML",
                     "info: loadView complete, loading started"}));
}

TEST_F(ViewControllerSetUp, ReadsTheModesAnewForTheContent) {
    class SecondLook final : public FileManager {
    public:
        [[nodiscard]] bool fileExists(std::string const& path) const override {
            return path == diagMarker && ++looks > 1;
        }

        mutable int looks = 0;
    };

    SecondLook files;
    Platform const ports{files,
                         platform.hostRuntime,
                         platform.logs,
                         platform.mainLoop,
                         platform.mediaTimes,
                         platform.notificationCenter,
                         platform.urlParser,
                         platform.userInterface,
                         platform.uuids,
                         platform.webEngine,
                         platform.workspace};
    controller = ViewController::create(ports);
    controller->loadView();
    EXPECT_EQ(journal.lines().at(0), "info: loadView starting, panelURL: " + productionURL);
    EXPECT_EQ(webView()->pages.size(), 1U);
}

TEST_F(ViewControllerSetUp, EnablesDeveloperExtrasInEveryMode) {
    for (auto const& files :
         {std::set<std::string>{}, std::set<std::string>{devMarker}, std::set<std::string>{diagMarker}}) {
        FakePlatform fresh;
        fresh.fileManager.files = files;
        ViewController::create(fresh.ports)->loadView();
        EXPECT_TRUE(fresh.webEngine.configuration.preferences.developerExtrasEnabled);
    }
}

TEST_F(ViewControllerSetUp, MarksTheWebViewInspectableWhereTheSystemKnowsThatInEveryMode) {
    for (auto const& files : {std::set<std::string>{}, std::set<std::string>{diagMarker}}) {
        FakePlatform fresh;
        fresh.fileManager.files = files;
        fresh.webEngine.supportsInspection = true;
        auto const panel = ViewController::create(fresh.ports);
        panel->loadView();
        auto const lines = fresh.journal.only(
            {"web view 2 setAutoresizing", "web view 2 marked", "info: Web Inspector", "remove all"});
        EXPECT_EQ(lines,
                  (Lines{"web view 2 setAutoresizing", "web view 2 marked inspectable",
                         "info: Web Inspector enabled — open Safari → Develop → This Mac → FCP Extension",
                         "remove all handlers"}));
    }
}

TEST_F(ViewControllerSetUp, LogsNothingOfInspectionOnAnOlderSystem) {
    controller->loadView();
    EXPECT_TRUE(journal.only({"info: Web Inspector"}).empty());
}

TEST_F(ViewControllerSetUp, LeavesExactlyOneHandlerBoundToTheVisibleWebView) {
    controller->loadView();
    auto const& handlers = platform.webEngine.controller->handlers;
    ASSERT_EQ(handlers.size(), 1U);
    EXPECT_EQ(platform.webEngine.configuration.userContentController, platform.webEngine.controller);
    platform.webEngine.controller->deliver({{"command", "isFCPRunning"}, {"resolveId", "r"}});
    EXPECT_EQ(webView()->answerTo("r"), Json(true));
    EXPECT_EQ(platform.timeline().observers.size(), 1U); // the first handler's is unregistered again
}

TEST_F(ViewControllerSetUp, MakesTheWebView400By700WithFlexibleSizes) {
    controller->loadView();
    auto const& frame = platform.webEngine.frame;
    EXPECT_EQ((std::vector{frame.x, frame.y, frame.width, frame.height}),
              (std::vector{0.0, 0.0, 400.0, 700.0}));
    EXPECT_EQ(webView()->autoresizing, Autoresizing::FlexibleWidth | Autoresizing::FlexibleHeight);
    EXPECT_EQ(webView()->delegate.lock(), controller);
}

TEST_F(ViewControllerSetUp, SetsTheBridgeBeforeItObservesResponses) {
    controller->loadView();
    journal.take();
    controller->viewDidLoad();
    EXPECT_EQ(journal.lines(), Lines{"observe com.zelvix.fcp.containerResponse"});
    // A command posted inside the registration would find the bridge: it is there when the observer comes.
    platform.webEngine.controller->deliver({{"command", "clearAllMarkers"}, {"resolveId", "r"}});
    EXPECT_EQ(platform.notificationCenter.posted.size(), 1U);
}

TEST_F(ViewControllerSetUp, AnswersContainerCommandsFalseUntilViewDidLoad) {
    controller->loadView();
    platform.webEngine.controller->deliver({{"command", "clearAllMarkers"}, {"resolveId", "r"}});
    EXPECT_EQ(webView()->answerTo("r"), Json(false));
    EXPECT_TRUE(platform.notificationCenter.posted.empty());
}

TEST_F(ViewControllerSetUp, PassesResponsesToTheBridgeEvenBeforeThePageHasLoaded) {
    loadPanel();
    platform.webEngine.controller->deliver({{"command", "clearAllMarkers"}, {"resolveId", "r"}});
    platform.notificationCenter.answer(0, true);
    EXPECT_EQ(webView()->answerTo("r"), Json(true));
}

TEST_F(ViewControllerSetUp, KeepsTheResponseObserverAndItsBridgeWhenThePanelIsGone) {
    loadPanel();
    auto const view = webView();
    platform.webEngine.controller->deliver({{"command", "clearAllMarkers"}, {"resolveId", "r"}});
    controller = nullptr;
    ASSERT_EQ(platform.notificationCenter.observers.size(), 1U);
    platform.notificationCenter.answer(0, true);
    EXPECT_EQ(view->answerTo("r"), Json(true));
}

TEST_F(ViewControllerSetUp, ReleasesWebViewAndOverlaysAtItsEndAndStopsNoTimer) {
    loadPanel();
    std::weak_ptr const view = webView();
    std::weak_ptr const weak = controller;
    platform.webEngine.controller = nullptr;
    controller = nullptr;
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(platform.mainLoop.pending(), 2U);
    platform.webEngine.configuration = {};
    EXPECT_TRUE(view.expired());
}

TEST_F(ViewControllerSetUp, DiesWhenThePanelsAddressMakesNoURL) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    platform.urlParser.refused = {productionURL};
    EXPECT_DEATH(controller->loadView(),
                 "Fatal error: Unexpectedly found nil while unwrapping an Optional value");
}

TEST_F(ViewControllerSetUp, DiesWhenTheContainerIsConnectedBeforeTheViewIsLoaded) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(controller->viewDidLoad(),
                 "Fatal error: Unexpectedly found nil while implicitly unwrapping an Optional value");
}

TEST_F(ViewControllerSetUp, CannotBeCopiedOrMoved) {
    static_assert(!std::is_copy_constructible_v<ViewController> &&
                  !std::is_move_constructible_v<ViewController>);
}

TEST(DiagnosticPage, IsItsSeventeenFixedLines) {
    EXPECT_EQ(diagnosticPage,
              "<!DOCTYPE html><html><head><meta charset=\"utf-8\"><title>FCP Diag</title>\n"
              "<style>body{font-family:-apple-system;margin:40px;background:#0a0a0a;color:#f0eee4}\n"
              "h1{font-size:18px;color:#f2762e}pre{font-size:11px;color:#9a988d;margin-top:20px}\n"
              ".ok{color:#4caf50}.fail{color:#e06551}</style></head>\n"
              "<body><h1>Zelvix FCP Extension \u2014 Diagnostic</h1>\n"
              "<p>If you see this, the WKWebView is rendering correctly.</p>\n"
              "<p>The issue is with the production React app, not the native extension.</p>\n"
              "<pre id=\"info\">Checking...</pre>\n"
              "<script>\n"
              "var e=document.getElementById('info');\n"
              "e.innerHTML='URL: '+location.href+'\\n'+\n"
              "'User-Agent: '+navigator.userAgent+'\\n'+\n"
              "'fcpBridge: '+(!!window.webkit?.messageHandlers?.fcpBridge?'OK':'MISSING')+'\\n'+\n"
              "'localStorage: '+(typeof localStorage!=='undefined'?'OK':'MISSING')+'\\n'+\n"
              "'Time: '+new Date().toISOString();\n"
              "console.log('[FCP Diag] Page loaded successfully');\n"
              "</script></body></html>");
}

} // namespace

} // namespace fcp::test
