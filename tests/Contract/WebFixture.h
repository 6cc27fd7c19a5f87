#pragma once

#include "Doubles/FakeLog.h"
#include "Doubles/FakeMainLoop.h"
#include "Doubles/MisbehavingServer.h"
#include "Platform/Gtk/GtkWebEngine.h"
#include "Ports/WebView.h"

#include <glib-object.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace fcp::test {

// The journal's line for a web process that was killed.
inline constexpr char const* crashed = "error: The web process has ended: it crashed";

// Turns the default main context until the condition holds. False when it does not within `patience`.
bool waitFor(std::function<bool()> const& condition, Seconds patience = Seconds(60));

// Notes what it is told, and turns down the addresses that contain one of `unwanted`.
class RecordingDelegate final : public NavigationDelegate {
public:
    void didFinish(WebView& webView) override;
    void didFail(WebView& webView, NavigationError const& error) override;
    void didFailProvisionalNavigation(WebView& webView, NavigationError const& error) override;
    void decidePolicyFor(WebView& webView, NavigationAction const& action,
                         std::function<void(NavigationActionPolicy)> const& decisionHandler) override;

    std::vector<std::string> unwanted;
    std::vector<std::string> asked; // addresses, in order
    std::vector<std::string> reports; // "finished", "failed DOMAIN CODE", "failed provisionally DOMAIN CODE"
    std::string latestDescription;
    std::function<void()> onReport;

private:
    void note(std::string report);
};

// Keeps the bodies that a page posted.
class RecordingHandler final : public ScriptMessageHandler {
public:
    void userContentController(UserContentController& controller, ScriptMessage const& message) override;

    std::vector<Json> bodies;
    std::function<void()> onMessage;
};

// One real web view with a delegate, the handler "fcpBridge" and a server of its own. At its end every
// engine's view that it made must be gone.
class WebFixture : public testing::Test {
protected:
    WebFixture();
    void TearDown() override;

    // In place of the present one.
    void makeView();

    void load(std::string const& url, double timeout = 60.0);

    // Waits for that many reports altogether.
    [[nodiscard]] bool waitForReports(std::size_t count);
    [[nodiscard]] bool waitForMessages(std::size_t count);

    // Runs a script and waits for its end; its error, or "".
    std::string run(std::string const& script);

    // The address of the page shown, or "".
    [[nodiscard]] std::string address() const;

    // Loads one more page, which must finish: whatever the load before still had to say has been said by
    // then.
    [[nodiscard]] std::vector<std::string> reportsUpToTheNextPage();

    // Ends the view's web process as a crash would. The engine's spare process dies with it, and another view
    // makes sure that this is known before it can be taken for a later load.
    void killWebProcesses();

    void watch(GObject* object);

    Journal journal;
    FakeLogSystem logs{journal};
    FakeMainLoop loop; // virtual time for the adapter; the engine lives in real time
    GtkWebEngine engine{loop, logs};
    MisbehavingServer server;
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    std::shared_ptr<RecordingHandler> handler = std::make_shared<RecordingHandler>();
    std::shared_ptr<UserContentController> controller;
    std::shared_ptr<WebView> webView;

private:
    int watched = 0;
};

} // namespace fcp::test
