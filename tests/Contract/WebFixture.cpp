#include "Contract/WebFixture.h"

#include "Doubles/WebProcesses.h"
#include "Platform/Gtk/GtkUserContentController.h"
#include "Platform/Gtk/GtkWebView.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <chrono>

namespace fcp::test {

bool waitFor(std::function<bool()> const& condition, Seconds patience) {
    bool late = false;
    auto const interval = static_cast<guint>(std::chrono::ceil<std::chrono::milliseconds>(patience).count());
    auto const source = GRef<GSource>::adopt(g_timeout_source_new(interval));
    auto const expire = [](gpointer flag) -> gboolean {
        *static_cast<bool*>(flag) = true;
        return G_SOURCE_REMOVE;
    };
    g_source_set_callback(source.get(), expire, &late, nullptr);
    g_source_attach(source.get(), nullptr);
    while (!late && !condition())
        g_main_context_iteration(nullptr, TRUE);
    g_source_destroy(source.get());
    return condition();
}

void RecordingDelegate::didFinish(WebView&) {
    note("finished");
}

void RecordingDelegate::didFail(WebView&, NavigationError const& error) {
    latestDescription = error.localizedDescription;
    note("failed " + error.domain + " " + std::to_string(error.code));
}

void RecordingDelegate::didFailProvisionalNavigation(WebView&, NavigationError const& error) {
    latestDescription = error.localizedDescription;
    note("failed provisionally " + error.domain + " " + std::to_string(error.code));
}

void RecordingDelegate::decidePolicyFor(WebView&, NavigationAction const& action,
                                        std::function<void(NavigationActionPolicy)> const& decisionHandler) {
    auto const address = action.url ? action.url->absoluteString : "none";
    asked.push_back(address);
    auto const contained = [&address](std::string const& part) {
        return address.find(part) != std::string::npos;
    };
    decisionHandler(std::ranges::any_of(unwanted, contained) ? NavigationActionPolicy::Cancel
                                                             : NavigationActionPolicy::Allow);
}

void RecordingDelegate::note(std::string report) {
    reports.push_back(std::move(report));
    if (onReport)
        onReport();
}

void RecordingHandler::userContentController(UserContentController&, ScriptMessage const& message) {
    bodies.push_back(message.body);
    if (onMessage)
        onMessage();
}

WebFixture::WebFixture() {
    server.answer("/ok", pageAnswer("<!doctype html><title>ok</title>ok"));
    makeView();
}

void WebFixture::TearDown() {
    webView.reset();
    controller.reset();
    EXPECT_TRUE(waitFor([this] { return watched == 0; }))
        << watched << " objects of the engine are still there";
}

void WebFixture::makeView() {
    controller = engine.makeUserContentController();
    controller->addScriptMessageHandler(handler, "fcpBridge");
    webView = engine.makeWebView({0, 0, 400, 700}, {controller, {}});
    webView->setNavigationDelegate(delegate);
    watch(G_OBJECT(std::dynamic_pointer_cast<GtkWebView>(webView)->engineView()));
    watch(G_OBJECT(std::dynamic_pointer_cast<GtkUserContentController>(controller)->manager()));
}

void WebFixture::watch(GObject* object) {
    ++watched;
    g_object_weak_ref(object, [](gpointer count, GObject*) { --*static_cast<int*>(count); }, &watched);
}

void WebFixture::load(std::string const& url, double timeout) {
    webView->load({{url, std::nullopt}, timeout});
}

bool WebFixture::waitForReports(std::size_t count) {
    return waitFor([&] { return delegate->reports.size() >= count; });
}

bool WebFixture::waitForMessages(std::size_t count) {
    return waitFor([&] { return handler->bodies.size() >= count; });
}

std::string WebFixture::run(std::string const& script) {
    // Shared, because a script that does not end in time may still end later.
    auto const ended = std::make_shared<std::optional<std::string>>();
    webView->evaluateJavaScript(
        script, [ended](std::optional<std::string> const& error) { *ended = error.value_or(""); });
    EXPECT_TRUE(waitFor([&ended] { return ended->has_value(); }));
    return ended->value_or("");
}

std::string WebFixture::address() const {
    return webView->url().value_or(Url{}).absoluteString;
}

std::vector<std::string> WebFixture::reportsUpToTheNextPage() {
    auto const known = static_cast<std::ptrdiff_t>(delegate->reports.size());
    load(server.url("/ok?next"));
    EXPECT_TRUE(waitFor([&] {
        auto const& reports = delegate->reports;
        return std::find(reports.begin() + known, reports.end(), "finished") != reports.end();
    }));
    EXPECT_EQ(address(), server.url("/ok?next"));
    return delegate->reports;
}

void WebFixture::killWebProcesses() {
    auto const crashes = journal.count(crashed);
    EXPECT_GE(killEngineProcesses(webProcess), 1U);
    EXPECT_TRUE(waitFor([&] { return journal.count(crashed) > crashes; }));
    auto const witness = std::make_shared<RecordingDelegate>();
    auto const other = engine.makeWebView();
    other->setNavigationDelegate(witness);
    for (int attempt = 0; attempt < 5 && witness->reports.empty(); ++attempt) {
        auto const before = journal.count(crashed);
        other->load({{server.url("/ok"), std::nullopt}});
        EXPECT_TRUE(waitFor([&] { return !witness->reports.empty() || journal.count(crashed) > before; }));
    }
    EXPECT_EQ(witness->reports, std::vector<std::string>{"finished"});
}

} // namespace fcp::test

int main(int argumentCount, char** arguments) {
    testing::InitGoogleTest(&argumentCount, arguments);
    gtk_init();
    g_log_set_always_fatal(
        static_cast<GLogLevelFlags>(G_LOG_LEVEL_ERROR | G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING));
    return RUN_ALL_TESTS();
}
