#include "Platform/Gtk/GtkWebView.h"
#include "Contract/WebFixture.h"
#include "Doubles/WebProcesses.h"
#include "Platform/Gtk/GtkView.h"

#include <algorithm>
#include <csignal>
#include <numeric>
#include <type_traits>

namespace fcp::test {

namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;

static_assert(!std::is_copy_constructible_v<GtkWebView> && !std::is_move_constructible_v<GtkWebView>);

class GtkWebViewTest : public WebFixture {
protected:
    void loadPage(std::string const& body) {
        server.answer("/page", pageAnswer(body));
        load(server.url("/page"));
        ASSERT_TRUE(waitForReports(delegate->reports.size() + 1));
        ASSERT_EQ(delegate->reports.back(), "finished");
    }

    // What the page posts in answer to a script.
    Json answerTo(std::string const& script) {
        auto const before = handler->bodies.size();
        EXPECT_EQ(run("{ const post = value => webkit.messageHandlers.fcpBridge.postMessage(value); " +
                      script + "} undefined"),
                  "");
        EXPECT_TRUE(waitForMessages(before + 1));
        return handler->bodies.size() > before ? handler->bodies.back() : Json();
    }

    [[nodiscard]] std::shared_ptr<GtkWebView> gtkWebView() const {
        return std::dynamic_pointer_cast<GtkWebView>(webView);
    }

    [[nodiscard]] WebKitWebView* engineView() const { return gtkWebView()->engineView(); }
};

TEST_F(GtkWebViewTest, RunsScriptsInTheOrderOfTheCalls) {
    loadPage("page");
    constexpr int count = 2000;
    std::vector<int> completed;
    for (int number = 0; number < count; ++number) {
        webView->evaluateJavaScript("(window.order ||= []).push(" + std::to_string(number) + "); undefined",
                                    [&completed, number](auto const& error) {
                                        EXPECT_FALSE(error);
                                        completed.push_back(number);
                                    });
    }
    std::vector<int> expected(count);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(answerTo("post({order})"), (Json{{"order", expected}}));
    EXPECT_EQ(completed, expected);
}

TEST_F(GtkWebViewTest, RunsAScriptThatNobodyWaitsFor) {
    loadPage("page");
    webView->evaluateJavaScript("window.ran = true", {});
    EXPECT_EQ(answerTo("post({ran})"), (Json{{"ran", true}}));
}

TEST_F(GtkWebViewTest, PassesAScriptOnWholeWithItsNul) {
    loadPage("page");
    EXPECT_EQ(run("window.text = 'a\0b'; window.ran = true; undefined"s), "");
    EXPECT_EQ(answerTo("post({length: text.length, ran})"), (Json{{"length", 3}, {"ran", true}}));
}

TEST_F(GtkWebViewTest, RunsALongScript) {
    loadPage("page");
    EXPECT_EQ(run("window.text = '" + std::string(10 << 20, 'x') + "'; undefined"), "");
    EXPECT_EQ(answerTo("post({length: text.length})"), (Json{{"length", 10 << 20}}));
}

TEST_F(GtkWebViewTest, DescribesWhyAScriptFailed) {
    loadPage("page");
    EXPECT_NE(run("throw new Error('on purpose')").find("Error: on purpose"), std::string::npos);
    EXPECT_NE(run("this is no script").find("SyntaxError"), std::string::npos);
    EXPECT_EQ(run("document"), "Unsupported result type");
}

TEST_F(GtkWebViewTest, RunsAScriptBeforeTheFirstLoad) {
    EXPECT_EQ(run("window.ran = true; undefined"), "");
}

TEST_F(GtkWebViewTest, CompletesAScriptThoughTheViewWasDropped) {
    loadPage("page");
    std::weak_ptr<WebView> const weak = webView;
    bool done = false;
    webView->evaluateJavaScript("undefined", [&done](auto const&) { done = true; });
    webView.reset();
    EXPECT_TRUE(weak.expired());
    EXPECT_TRUE(waitFor([&done] { return done; }));
}

TEST_F(GtkWebViewTest, MayBeDroppedInsideACompletion) {
    loadPage("page");
    webView->evaluateJavaScript("undefined", [this](auto const&) { webView.reset(); });
    EXPECT_TRUE(waitFor([this] { return !webView; }));
}

TEST_F(GtkWebViewTest, LogsAKilledWebProcessAndLoadsAgain) {
    loadPage("page");
    killWebProcesses();
    EXPECT_EQ(logs.subsystem, "ai.zelvix.fcp.extension");
    EXPECT_EQ(logs.category, "WebView");
    EXPECT_FALSE(webView->url());
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{"finished", "finished"}));
    EXPECT_EQ(run("undefined"), "");
}

TEST_F(GtkWebViewTest, FailsAScriptThatTheWebProcessTookAlong) {
    loadPage("page");
    std::optional<std::string> failure;
    webView->evaluateJavaScript("for (;;);", [&failure](auto const& error) { failure = error; });
    killWebProcesses();
    EXPECT_TRUE(waitFor([&failure] { return failure.has_value(); }));
}

TEST_F(GtkWebViewTest, ReportsNothingOfALoadThatDiedWithItsProcess) {
    server.answer("/hang", {"", ServerAnswer::Then::Stall});
    load(server.url("/hang"));
    ASSERT_TRUE(waitFor([this] { return server.stalled() == 1; }));
    killWebProcesses();
    EXPECT_EQ(loop.pending(), 0U);
    EXPECT_EQ(delegate->reports, Lines{});
    EXPECT_EQ(reportsUpToTheNextPage(), Lines{"finished"});
}

TEST_F(GtkWebViewTest, ShowsNoPageToJumpWithinAfterItsProcessDied) {
    loadPage("page");
    killWebProcesses();
    server.answer("/page", {"", ServerAnswer::Then::Stall});
    load(server.url("/page#x"));
    ASSERT_TRUE(waitFor([this] { return server.stalled() == 1; }));
    EXPECT_EQ(loop.pending(), 1U);
    loop.advance(Seconds(120));
    ASSERT_TRUE(waitForReports(2));
    EXPECT_EQ(delegate->reports, (Lines{"finished", "failed provisionally NSURLErrorDomain -1001"}));
}

TEST_F(GtkWebViewTest, LosesItsProcessToARedirectIntoTheFileSystem) {
    server.answer("/page", redirectAnswer("file:///etc/hostname"));
    load(server.url("/page"));
    ASSERT_TRUE(waitFor([this] { return journal.count(crashed) >= 1; }));
    EXPECT_EQ(reportsUpToTheNextPage(), Lines{"finished"});
}

TEST_F(GtkWebViewTest, ReportsALostNetworkProcessAndLoadsAgain) {
    server.answer("/hang", {"", ServerAnswer::Then::Stall});
    load(server.url("/hang"));
    ASSERT_TRUE(waitFor([this] { return server.stalled() == 1; }));
    ASSERT_EQ(killEngineProcesses(networkProcess), 1U);
    ASSERT_TRUE(waitForReports(1));
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{"failed provisionally NSURLErrorDomain -1005", "finished"}));
}

TEST_F(GtkWebViewTest, AnswersDialogsWithoutShowingThem) {
    loadPage("page");
    EXPECT_EQ(answerTo("alert('a'); post({confirmed: confirm('b'), prompted: prompt('c', 'd')})"),
              (Json{{"confirmed", false}, {"prompted", nullptr}}));
}

TEST_F(GtkWebViewTest, LeavesAPageThatWouldLikeToBeKept) {
    loadPage("<script>onbeforeunload = event => { event.preventDefault(); return 'stay' }</script>page");
    EXPECT_EQ(run("document.body.click(); undefined"), "");
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{"finished", "finished"}));
}

TEST_F(GtkWebViewTest, DeniesPermissions) {
    // A page learns where it is only while somebody can see it.
    auto const window = GRef<GtkWindow>::retain(GTK_WINDOW(gtk_window_new()));
    gtk_window_set_child(window.get(), GTK_WIDGET(engineView()));
    gtk_window_present(window.get());
    loadPage("page");
    EXPECT_EQ(answerTo("navigator.geolocation.getCurrentPosition(() => post({granted: true}), "
                       "error => post({code: error.code}))"),
              (Json{{"code", 1}}));
    EXPECT_EQ(answerTo("Notification.requestPermission().then(answer => post({answer}))"),
              (Json{{"answer", "denied"}}));
    gtk_window_destroy(window.get());
}

TEST_F(GtkWebViewTest, OpensNoFileChooser) {
    loadPage("<input id=i type=file>");
    EXPECT_EQ(answerTo("i.addEventListener('cancel', () => post({files: i.files.length})); i.click()"),
              (Json{{"files", 0}}));
}

TEST_F(GtkWebViewTest, OpensNoPrintDialog) {
    loadPage("page");
    EXPECT_EQ(answerTo("print(); post({went: 'on'})"), (Json{{"went", "on"}}));
    std::unique_ptr<GList, decltype(&g_list_free)> const windows(gtk_window_list_toplevels(), g_list_free);
    EXPECT_EQ(windows, nullptr);
}

TEST_F(GtkWebViewTest, OffersNoWayToCoverTheScreen) {
    loadPage("page");
    EXPECT_EQ(answerTo("post({offered: 'requestFullscreen' in document.body})"), (Json{{"offered", false}}));
}

TEST_F(GtkWebViewTest, CancelsDownloads) {
    server.answer("/data",
                  pageAnswer(std::string(100'000, 'x'), "200 OK",
                             "Content-Type: application/octet-stream\r\n"
                             "Content-Disposition: attachment; filename=\"fcp-download-test.bin\"\r\n"));
    loadPage("<a id=a download href=/data>a</a>");
    auto* const session = webkit_web_view_get_network_session(engineView());
    Lines events;
    auto const started = [](WebKitNetworkSession*, WebKitDownload* download, gpointer lines) {
        auto const failed = [](WebKitDownload*, GError* error, gpointer list) {
            static_cast<Lines*>(list)->push_back("failed " + std::to_string(error->code));
        };
        g_signal_connect(download, "failed", G_CALLBACK(+failed), lines);
    };
    auto const connection = g_signal_connect(session, "download-started", G_CALLBACK(+started), &events);
    EXPECT_EQ(run("a.click(); undefined"), "");
    EXPECT_TRUE(waitFor([&events] { return !events.empty(); }));
    g_signal_handler_disconnect(session, connection);
    EXPECT_EQ(events, Lines{"failed " + std::to_string(WEBKIT_DOWNLOAD_ERROR_CANCELLED_BY_USER)});
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{"finished", "finished"}));
}

TEST_F(GtkWebViewTest, LeavesOtherDownloadsOfTheProcessAlone) {
    server.answer("/data", pageAnswer("data"));
    auto* const session = webkit_web_view_get_network_session(engineView());
    auto const download = GRef<WebKitDownload>::adopt(
        webkit_network_session_download_uri(session, server.url("/data").c_str()));
    auto const path = std::string(g_get_tmp_dir()) + "/fcp-download-" + std::to_string(getpid());
    webkit_download_set_destination(download.get(), path.c_str());
    bool finished = false;
    auto const note = [](WebKitDownload*, gpointer flag) { *static_cast<bool*>(flag) = true; };
    g_signal_connect(download.get(), "finished", G_CALLBACK(+note), &finished);
    EXPECT_TRUE(waitFor([&finished] { return finished; }));
    EXPECT_EQ(unlink(path.c_str()), 0);
}

TEST_F(GtkWebViewTest, TakesItsSettingsFromTheConfiguration) {
    auto* const plain = webkit_web_view_get_settings(engineView());
    EXPECT_FALSE(webkit_settings_get_enable_developer_extras(plain));
    EXPECT_EQ(webkit_settings_get_hardware_acceleration_policy(plain),
              WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER);
    webView = engine.makeWebView({0, 0, 400, 700}, {controller, {.developerExtrasEnabled = true}});
    watch(G_OBJECT(engineView()));
    EXPECT_TRUE(webkit_settings_get_enable_developer_extras(webkit_web_view_get_settings(engineView())));
}

TEST_F(GtkWebViewTest, ReachesTheInspectorWithDeveloperExtras) {
    webView = engine.makeWebView({0, 0, 400, 700}, {controller, {.developerExtrasEnabled = true}});
    webView->setNavigationDelegate(delegate);
    watch(G_OBJECT(engineView()));
    loadPage("page");
    auto* const inspector = webkit_web_view_get_inspector(engineView());
    bool opened = false;
    auto const open = [](WebKitWebInspector*, gpointer flag) -> gboolean {
        return *static_cast<bool*>(flag) = true;
    };
    g_signal_connect(inspector, "open-window", G_CALLBACK(+open), &opened);
    webkit_web_inspector_show(inspector);
    EXPECT_TRUE(waitFor([&opened] { return opened; }));
    webkit_web_inspector_close(inspector);
}

TEST_F(GtkWebViewTest, IsAViewOfItsFrameThatSharesItsOwnership) {
    EXPECT_EQ(webView->view()->bounds().width, 400);
    EXPECT_EQ(webView->view()->bounds().height, 700);
    std::weak_ptr<WebView> const weak = webView;
    auto container = std::make_shared<GtkView>(gtk_fixed_new(), Rect{0, 0, 400, 700});
    container->addSubview(webView->view());
    auto* const widget = GTK_WIDGET(engineView());
    EXPECT_EQ(gtk_widget_get_parent(widget), container->widget());
    webView.reset();
    EXPECT_FALSE(weak.expired());
    container.reset();
    EXPECT_TRUE(weak.expired());
}

TEST_F(GtkWebViewTest, FollowsItsSuperviewByItsMask) {
    webView->setAutoresizing(Autoresizing::FlexibleWidth | Autoresizing::FlexibleHeight);
    auto const container = std::make_shared<GtkView>(gtk_fixed_new(), Rect{0, 0, 400, 700});
    container->addSubview(webView->view());
    container->resize(500, 650);
    EXPECT_EQ(webView->view()->bounds().width, 500);
    EXPECT_EQ(webView->view()->bounds().height, 650);
    webView.reset();
}

TEST_F(GtkWebViewTest, StartsNoProcessForAViewThatIsThrownAway) {
    loadPage("page");
    auto const processes = engineProcesses(webProcess);
    auto first = engine.makeWebView();
    watch(G_OBJECT(std::dynamic_pointer_cast<GtkWebView>(first)->engineView()));
    std::weak_ptr<WebView> const weak = first;
    first.reset();
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(run("undefined"), "");
    EXPECT_TRUE(std::ranges::includes(processes, engineProcesses(webProcess)));
}

} // namespace

} // namespace fcp::test
