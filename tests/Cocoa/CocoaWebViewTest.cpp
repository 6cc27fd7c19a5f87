#include "Cocoa/Desktop.h"
#include "Cocoa/NativePage.h"
#include "Contract/WebViewContract.h"
#include "Doubles/FakeWebEngine.h"
#include "Platform/Cocoa/CocoaWebEngine.h"
#include "Platform/Cocoa/CocoaWorkspace.h"

#include <limits>

namespace fcp::test {

namespace {

using Lines = std::vector<std::string>;

class CocoaHarness {
public:
    static constexpr bool knowsInspection = true;

    WebEngine& engine() { return cocoaEngine; }

    void open(WebView&) {}

    void post(WebView& webView, Json const& body) { NativePage(webView).post(body); }

    Lines heard(WebView& webView) { return NativePage(webView).eventNames(); }

private:
    CocoaWebEngine cocoaEngine;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Cocoa, WebViewContract, CocoaHarness);

// Notes what it is told, and answers as it is told to.
class Delegate final : public NavigationDelegate {
public:
    void didFinish(WebView& webView) override { note("finished", webView); }

    void didFail(WebView& webView, NavigationError const& error) override {
        note("failed [" + error.domain + ":" + std::to_string(error.code) + "] " + error.localizedDescription,
             webView);
    }

    void didFailProvisionalNavigation(WebView& webView, NavigationError const& error) override {
        note("failed early [" + error.domain + ":" + std::to_string(error.code) + "] " +
                 error.localizedDescription,
             webView);
    }

    void decidePolicyFor(WebView& webView, NavigationAction const& action,
                         std::function<void(NavigationActionPolicy)> const& decide) override {
        auto const url = action.url.value_or(Url{"none", std::nullopt});
        note("asked " + url.absoluteString + " at " + url.host.value_or("no host"), webView);
        for (auto const answer : answers)
            decide(answer);
        if (onDecision)
            onDecision();
    }

    Lines reports;
    WebView* reporting = nullptr;
    std::vector<NavigationActionPolicy> answers{NavigationActionPolicy::Allow};
    std::function<void()> onDecision;

private:
    void note(std::string report, WebView& webView) {
        reports.push_back(std::move(report));
        reporting = &webView;
    }
};

class CocoaWebViewTest : public testing::Test {
protected:
    CocoaWebViewTest() { webView->setNavigationDelegate(delegate); }

    ~CocoaWebViewTest() override { setKnowsInspection(true); }

    CocoaWebEngine engine;
    std::shared_ptr<UserContentController> controller = engine.makeUserContentController();
    std::shared_ptr<WebView> webView = engine.makeWebView({0, 0, 400, 700}, {controller, {true}});
    std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>();
    NativePage page{*webView};
};

using Policies = std::vector<NavigationActionPolicy>;

TEST_F(CocoaWebViewTest, IsConfiguredAsAsked) {
    EXPECT_TRUE(page.hasDeveloperExtras());
    auto const plain = engine.makeWebView({1, 2, 3, 4}, {controller, {false}});
    EXPECT_FALSE(NativePage(*plain).hasDeveloperExtras());
    EXPECT_EQ(NativePage(*plain).frame().width, 3);
    EXPECT_EQ(page.frame().height, 700);
    webView->setAutoresizing(Autoresizing::FlexibleWidth | Autoresizing::FlexibleHeight);
    EXPECT_EQ(page.mask(), 2U | 16U);
}

TEST_F(CocoaWebViewTest, RequestsWithTheProtocolsPolicyAndTheTimeoutThatItIsGiven) {
    webView->load({{"http://localhost:3000/fcp-panel/login", "localhost"}});
    webView->load({{"about:blank", std::nullopt}, 5});
    EXPECT_EQ(page.loads(), (std::vector<Load>{{"http://localhost:3000/fcp-panel/login", "", 60, true},
                                               {"about:blank", "", 5, true}}));
    EXPECT_EQ(webView->url().value_or(Url{}).absoluteString, "about:blank");
    EXPECT_FALSE(webView->url().value_or(Url{}).host);
}

TEST_F(CocoaWebViewTest, LoadsTextWithoutABaseAddress) {
    Journal journal;
    noteNativePages(&journal);
    webView->loadHTMLString("<p>\u2014\n</p>");
    noteNativePages(nullptr);
    EXPECT_EQ(page.loads(), (std::vector<Load>{{"", "<p>\u2014\n</p>", 0, false}}));
    EXPECT_EQ(journal.lines().size(), 1U);
    EXPECT_TRUE(journal.lines().at(0).ends_with("load HTML")) << journal.lines().at(0);
}

TEST_F(CocoaWebViewTest, PassesOnEveryReportWithItsError) {
    page.finish();
    page.fail({"NSURLErrorDomain", -1009, "The Internet connection appears to be offline."});
    page.failProvisionally({"WebKitErrorDomain", 102, "Frame load interrupted"});
    EXPECT_EQ(
        delegate->reports,
        (Lines{"finished", "failed [NSURLErrorDomain:-1009] The Internet connection appears to be offline.",
               "failed early [WebKitErrorDomain:102] Frame load interrupted"}));
    EXPECT_EQ(delegate->reporting, webView.get());
}

TEST_F(CocoaWebViewTest, AsksThePolicyAndAnswersOnce) {
    EXPECT_EQ(page.decide("https://Zelvix.example:8443/a?b#c"), std::vector<bool>{true});
    delegate->answers = {NavigationActionPolicy::Cancel};
    EXPECT_EQ(page.decide("about:blank"), std::vector<bool>{false});
    EXPECT_EQ(page.decide(std::nullopt), std::vector<bool>{false});
    EXPECT_EQ(delegate->reports, (Lines{"asked https://Zelvix.example:8443/a?b#c at Zelvix.example",
                                        "asked about:blank at no host", "asked none at no host"}));
}

TEST_F(CocoaWebViewTest, AnswersOnceWhateverTheDelegateDoes) {
    delegate->answers = {};
    EXPECT_EQ(page.decide("https://a.example/"), std::vector<bool>{false});
    delegate->answers = {NavigationActionPolicy::Cancel, NavigationActionPolicy::Allow};
    EXPECT_EQ(page.decide("https://a.example/").size(), 1U);
    delegate.reset();
    EXPECT_EQ(page.decide("https://a.example/"), std::vector<bool>{true});
}

TEST_F(CocoaWebViewTest, AnswersOnceWhenTheDelegateGoesInItsOwnCall) {
    delegate->answers = {NavigationActionPolicy::Cancel};
    delegate->onDecision = [this] { delegate.reset(); };
    EXPECT_EQ(page.decide("https://a.example/"), std::vector<bool>{false});
}

TEST_F(CocoaWebViewTest, IsMarkedOnlyWhereTheSystemKnowsTheMark) {
    setKnowsInspection(false);
    EXPECT_FALSE(webView->markInspectable());
    EXPECT_FALSE(page.isInspectable());
    setKnowsInspection(true);
    EXPECT_TRUE(webView->markInspectable());
    EXPECT_TRUE(page.isInspectable());
}

TEST_F(CocoaWebViewTest, TellsHowAScriptEnded) {
    Lines ends;
    auto const note = [&ends](auto const& error) { ends.push_back(error.value_or("ran")); };
    webView->evaluateJavaScript("1", note);
    webView->evaluateJavaScript("'\u00e9'", {});
    page.endScripts(std::nullopt);
    webView->evaluateJavaScript("2", note);
    page.endScripts("A JavaScript exception occurred");
    EXPECT_EQ(ends, (Lines{"ran", "A JavaScript exception occurred"}));
    EXPECT_EQ(page.scripts(), (Lines{"1", "'\u00e9'", "2"}));
}

TEST_F(CocoaWebViewTest, CleansWhatAPagePosts) {
    class Bodies final : public ScriptMessageHandler {
    public:
        void userContentController(UserContentController&, ScriptMessage const& message) override {
            bodies.push_back(message.body);
        }

        std::vector<Json> bodies;
    };

    auto const handler = std::make_shared<Bodies>();
    controller->addScriptMessageHandler(handler, "fcpBridge");
    auto const infinity = std::numeric_limits<double>::infinity();
    page.post({{"seconds", infinity}, {"other", infinity}, {"whole", 2.0}});
    page.post("no dictionary");
    page.post(Json::array({1}));
    page.post(nullptr);
    ASSERT_EQ(handler->bodies.size(), 1U);
    EXPECT_EQ(handler->bodies[0]["seconds"], infinity);
    EXPECT_TRUE(handler->bodies[0]["other"].is_null());
    EXPECT_TRUE(handler->bodies[0]["whole"].is_number_integer());
}

TEST_F(CocoaWebViewTest, GoesWithItsNativeView) {
    auto const before = nativePages();
    auto view = engine.makeWebView();
    EXPECT_EQ(nativePages(), before + 1);
    view.reset();
    EXPECT_EQ(nativePages(), before);
}

TEST(CocoaWorkspaceTest, HandsAddressesToTheDesktopAsTheyAre) {
    CocoaWorkspace workspace;
    workspace.open({"https://elsewhere.example/a?b=%20&c='d'#e", "elsewhere.example"});
    workspace.open({"mailto:x@zelvix.example", std::nullopt});
    EXPECT_EQ(takeOpenedAddresses(),
              (Lines{"https://elsewhere.example/a?b=%20&c='d'#e", "mailto:x@zelvix.example"}));
}

} // namespace

} // namespace fcp::test
