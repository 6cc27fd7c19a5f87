#include "Contract/WebViewContract.h"
#include "Contract/WebFixture.h"
#include "Doubles/FakeWebEngine.h"
#include "Platform/Gtk/GLibMainLoop.h"

#include <gtest/gtest.h>

namespace fcp::test {

namespace {

using Lines = std::vector<std::string>;

// The double: a page is what the test says it is.
class FakeHarness {
public:
    static constexpr bool knowsInspection = false;

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
    static constexpr bool knowsInspection = false;

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

using Harnesses = testing::Types<FakeHarness, GtkHarness>;
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, WebViewContract, Harnesses);

} // namespace

} // namespace fcp::test
