#pragma once

#include "FcpExtension/EventScript.h"
#include "Ports/WebView.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace fcp::test {

using Names = std::vector<std::string>;

class SilentDelegate final : public NavigationDelegate {
public:
    void didFinish(WebView&) override {}

    void didFail(WebView&, NavigationError const&) override {}

    void didFailProvisionalNavigation(WebView&, NavigationError const&) override {}

    void decidePolicyFor(WebView&, NavigationAction const&,
                         std::function<void(NavigationActionPolicy)> const& decide) override {
        decide(NavigationActionPolicy::Allow);
    }
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
    Names names;
    std::vector<Json> bodies;
    std::function<void()> onMessage;
};

// A harness has an `engine`, opens a page in a web view, posts as that page, and knows which events it heard.
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

TYPED_TEST_SUITE_P(WebViewContract);

TYPED_TEST_P(WebViewContract, DeliversAPostedMessageToItsHandler) {
    Json const body{
        {"command", "seekTo"}, {"seconds", 12.5}, {"list", {1, nullptr, true}}, {"text", "\u00e9"}};
    this->harness.open(*this->webView);
    this->harness.post(*this->webView, body);
    EXPECT_EQ(this->receiver->names, Names{"fcpBridge"});
    EXPECT_EQ(this->receiver->bodies, std::vector<Json>{body});
    EXPECT_EQ(this->receiver->sender, this->controller.get());
}

TYPED_TEST_P(WebViewContract, DeliversNothingToARemovedHandler) {
    this->harness.open(*this->webView);
    this->controller->removeAllScriptMessageHandlers();
    this->harness.post(*this->webView, {{"a", 1}});
    EXPECT_EQ(this->receiver->bodies, std::vector<Json>{});
}

TYPED_TEST_P(WebViewContract, DeliversToTheHandlerThatTookTheNameOver) {
    this->harness.open(*this->webView);
    auto const next = std::make_shared<Receiver>();
    this->controller->removeAllScriptMessageHandlers();
    this->controller->addScriptMessageHandler(next, "fcpBridge");
    this->harness.post(*this->webView, {{"a", 1}});
    EXPECT_EQ(this->receiver->bodies, std::vector<Json>{});
    EXPECT_EQ(next->bodies, (std::vector<Json>{{{"a", 1}}}));
}

TYPED_TEST_P(WebViewContract, SharesTheOwnershipOfAHandlerUntilItIsRemoved) {
    std::weak_ptr<Receiver> const weak = this->receiver;
    this->receiver.reset();
    EXPECT_FALSE(weak.expired());
    this->controller->removeAllScriptMessageHandlers();
    EXPECT_TRUE(weak.expired());
}

TYPED_TEST_P(WebViewContract, LetsAHandlerRemoveItselfWhileItIsCalled) {
    this->harness.open(*this->webView);
    std::weak_ptr<Receiver> const weak = this->receiver;
    this->receiver->onMessage = [this] { this->controller->removeAllScriptMessageHandlers(); };
    this->receiver.reset();
    this->harness.post(*this->webView, {{"a", 1}});
    EXPECT_TRUE(weak.expired());
}

TYPED_TEST_P(WebViewContract, RunsEventScriptsInTheOrderOfTheCalls) {
    this->harness.open(*this->webView);
    for (auto const* name : {"fcp:one", "fcp:two", "fcp:one"})
        this->webView->evaluateJavaScript(eventScript(name, "{}"),
                                          [](auto const& error) { EXPECT_FALSE(error); });
    EXPECT_EQ(this->harness.heard(*this->webView), (Names{"fcp:one", "fcp:two", "fcp:one"}));
}

TYPED_TEST_P(WebViewContract, LetsAViewThatWasNeverUsedGoAtOnce) {
    auto view = this->harness.engine().makeWebView();
    std::weak_ptr<WebView> const weak = view;
    view.reset();
    EXPECT_TRUE(weak.expired());
}

TYPED_TEST_P(WebViewContract, BorrowsItsDelegate) {
    auto delegate = std::make_shared<SilentDelegate>();
    std::weak_ptr<NavigationDelegate> const weak = delegate;
    this->webView->setNavigationDelegate(delegate);
    delegate.reset();
    EXPECT_TRUE(weak.expired());
}

TYPED_TEST_P(WebViewContract, HasNoAddressBeforeTheFirstLoad) {
    EXPECT_FALSE(this->webView->url());
}

TYPED_TEST_P(WebViewContract, MarksAViewAsInspectableWhereTheSystemKnowsThat) {
    EXPECT_EQ(this->webView->markInspectable(), TypeParam::knowsInspection);
}

TYPED_TEST_P(WebViewContract, HasAView) {
    EXPECT_NE(this->webView->view(), nullptr);
}

REGISTER_TYPED_TEST_SUITE_P(WebViewContract, DeliversAPostedMessageToItsHandler,
                            DeliversNothingToARemovedHandler, DeliversToTheHandlerThatTookTheNameOver,
                            SharesTheOwnershipOfAHandlerUntilItIsRemoved,
                            LetsAHandlerRemoveItselfWhileItIsCalled, RunsEventScriptsInTheOrderOfTheCalls,
                            LetsAViewThatWasNeverUsedGoAtOnce, BorrowsItsDelegate,
                            HasNoAddressBeforeTheFirstLoad, MarksAViewAsInspectableWhereTheSystemKnowsThat,
                            HasAView);

} // namespace fcp::test
