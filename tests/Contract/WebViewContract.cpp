#include "Contract/WebFixture.h"
#include "Doubles/FakeWebEngine.h"
#include "FcpExtension/EventScript.h"
#include "Platform/Gtk/GLibMainLoop.h"

#include <gtest/gtest.h>

namespace fcp::test {

namespace {

using Lines = std::vector<std::string>;

// The double: a page is what the test says it is.
class FakeHarness {
public:
    WebEngine& engine() { return fakeEngine; }

    void open(WebView&) {}

    void post(WebView&, Json const& body) { fakeEngine.controller->deliver(body); }

    // The names of the events that the page has heard.
    Lines heard(WebView& webView) { return dynamic_cast<FakeWebView&>(webView).eventNames(); }

private:
    Journal journal;
    FakeWebEngine fakeEngine{journal};
};

// The real engine with a real page, which notes the events that it hears.
class GtkHarness {
public:
    GtkHarness() {
        server.answer("/page",
                      pageAnswer("<script>const heard = []; for (const name of ['fcp:one', 'fcp:two']) "
                                 "addEventListener(name, event => heard.push(event.type))</script>"));
    }

    WebEngine& engine() { return gtkEngine; }

    void open(WebView& webView) {
        auto const delegate = std::make_shared<RecordingDelegate>();
        webView.setNavigationDelegate(delegate);
        webView.load({{server.url("/page"), std::nullopt}});
        EXPECT_TRUE(waitFor([&delegate] { return delegate->reports == Lines{"finished"}; }));
    }

    void post(WebView& webView, Json const& body) {
        run(webView, "webkit.messageHandlers.fcpBridge?.postMessage(" + body.dump() + ")");
    }

    // The answer comes as the text of an error, which every page may throw.
    Lines heard(WebView& webView) {
        auto const error = run(webView, "throw new Error('<' + heard.join() + '>')");
        Lines names;
        for (auto begin = error.find('<') + 1; error[begin - 1] != '>';) {
            auto const end = error.find_first_of(",>", begin);
            names.push_back(error.substr(begin, end - begin));
            begin = end + 1;
        }
        return names;
    }

private:
    std::string run(WebView& webView, std::string const& script) {
        std::optional<std::string> ended;
        webView.evaluateJavaScript("{ " + script + " } undefined",
                                   [&ended](auto const& error) { ended = error.value_or(""); });
        EXPECT_TRUE(waitFor([&ended] { return ended.has_value(); }));
        return ended.value_or("");
    }

    Journal journal;
    FakeLogSystem logs{journal};
    GLibMainLoop loop;
    GtkWebEngine gtkEngine{loop, logs};
    MisbehavingServer server;
};

// Calls back with each message, and tells which controller delivered it.
class Receiver final : public ScriptMessageHandler {
public:
    void userContentController(UserContentController& controller, ScriptMessage const& message) override {
        sender = &controller;
        names.push_back(message.name);
        bodies.push_back(message.body);
        if (onMessage)
            onMessage();
    }

    UserContentController* sender = nullptr;
    Lines names;
    std::vector<Json> bodies;
    std::function<void()> onMessage;
};

template <typename Harness>
class WebViewContract : public testing::Test {
protected:
    void SetUp() override {
        controller = harness.engine().makeUserContentController();
        controller->addScriptMessageHandler(receiver, "fcpBridge");
        webView = harness.engine().makeWebView({0, 0, 400, 700}, {controller, {true}});
    }

    Harness harness;
    std::shared_ptr<Receiver> receiver = std::make_shared<Receiver>();
    std::shared_ptr<UserContentController> controller;
    std::shared_ptr<WebView> webView;
};

using Harnesses = testing::Types<FakeHarness, GtkHarness>;
TYPED_TEST_SUITE(WebViewContract, Harnesses);

TYPED_TEST(WebViewContract, DeliversAPostedMessageToItsHandler) {
    Json const body{
        {"command", "seekTo"}, {"seconds", 12.5}, {"list", {1, nullptr, true}}, {"text", "\u00e9"}};
    this->harness.open(*this->webView);
    this->harness.post(*this->webView, body);
    EXPECT_EQ(this->receiver->names, Lines{"fcpBridge"});
    EXPECT_EQ(this->receiver->bodies, std::vector<Json>{body});
    EXPECT_EQ(this->receiver->sender, this->controller.get());
}

TYPED_TEST(WebViewContract, DeliversNothingToARemovedHandler) {
    this->harness.open(*this->webView);
    this->controller->removeAllScriptMessageHandlers();
    this->harness.post(*this->webView, {{"a", 1}});
    EXPECT_EQ(this->receiver->bodies, std::vector<Json>{});
}

TYPED_TEST(WebViewContract, DeliversToTheHandlerThatTookTheNameOver) {
    this->harness.open(*this->webView);
    auto const next = std::make_shared<Receiver>();
    this->controller->removeAllScriptMessageHandlers();
    this->controller->addScriptMessageHandler(next, "fcpBridge");
    this->harness.post(*this->webView, {{"a", 1}});
    EXPECT_EQ(this->receiver->bodies, std::vector<Json>{});
    EXPECT_EQ(next->bodies, (std::vector<Json>{{{"a", 1}}}));
}

TYPED_TEST(WebViewContract, SharesTheOwnershipOfAHandlerUntilItIsRemoved) {
    std::weak_ptr<Receiver> const weak = this->receiver;
    this->receiver.reset();
    EXPECT_FALSE(weak.expired());
    this->controller->removeAllScriptMessageHandlers();
    EXPECT_TRUE(weak.expired());
}

TYPED_TEST(WebViewContract, LetsAHandlerRemoveItselfWhileItIsCalled) {
    this->harness.open(*this->webView);
    std::weak_ptr<Receiver> const weak = this->receiver;
    this->receiver->onMessage = [this] { this->controller->removeAllScriptMessageHandlers(); };
    this->receiver.reset();
    this->harness.post(*this->webView, {{"a", 1}});
    EXPECT_TRUE(weak.expired());
}

TYPED_TEST(WebViewContract, RunsEventScriptsInTheOrderOfTheCalls) {
    this->harness.open(*this->webView);
    for (auto const* name : {"fcp:one", "fcp:two", "fcp:one"})
        this->webView->evaluateJavaScript(eventScript(name, "{}"),
                                          [](auto const& error) { EXPECT_FALSE(error); });
    EXPECT_EQ(this->harness.heard(*this->webView), (Lines{"fcp:one", "fcp:two", "fcp:one"}));
}

TYPED_TEST(WebViewContract, LetsAViewThatWasNeverUsedGoAtOnce) {
    auto view = this->harness.engine().makeWebView();
    std::weak_ptr<WebView> const weak = view;
    view.reset();
    EXPECT_TRUE(weak.expired());
}

TYPED_TEST(WebViewContract, BorrowsItsDelegate) {
    auto delegate = std::make_shared<RecordingDelegate>();
    std::weak_ptr<NavigationDelegate> const weak = delegate;
    this->webView->setNavigationDelegate(delegate);
    delegate.reset();
    EXPECT_TRUE(weak.expired());
}

TYPED_TEST(WebViewContract, HasNoAddressBeforeTheFirstLoad) {
    EXPECT_FALSE(this->webView->url());
}

TYPED_TEST(WebViewContract, KnowsNoMarkForInspection) {
    EXPECT_FALSE(this->webView->markInspectable());
}

TYPED_TEST(WebViewContract, HasAView) {
    EXPECT_NE(this->webView->view(), nullptr);
}

} // namespace

} // namespace fcp::test
