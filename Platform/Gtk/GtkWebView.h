#pragma once

#include "Platform/Gtk/GRef.h"
#include "Platform/Gtk/GSignal.h"
#include "Platform/Gtk/GtkView.h"
#include "Platform/Gtk/NavigationTracker.h"
#include "Ports/MainLoop.h"
#include "Ports/WebView.h"

#include <webkit/webkit.h>

#include <memory>
#include <string>
#include <vector>

namespace fcp {

class GtkPageRestrictions;
class GtkUserContentController;
class Log;

// One WebKitGTK web view. It adds what the engine lacks: a time-out for the main resource, and load reports
// that name every failure once. A web process that dies is logged and leaves the view as it is; the next load
// starts another one.
class GtkWebView final : public WebView, public std::enable_shared_from_this<GtkWebView> {
public:
    GtkWebView(MainLoop& loop, std::shared_ptr<Log> webViewLog, Rect const& frame,
               WebViewPreferences const& preferences, std::shared_ptr<GtkUserContentController> userContent);
    ~GtkWebView() override;

    GtkWebView(GtkWebView const&) = delete;
    GtkWebView& operator=(GtkWebView const&) = delete;

    void setNavigationDelegate(std::weak_ptr<NavigationDelegate> delegate) override;
    void setAutoresizing(Autoresizing mask) override;
    [[nodiscard]] bool markInspectable() override;

    // A navigation that the page starts later has as much time as the latest request.
    void load(UrlRequest const& request) override;
    void loadHTMLString(std::string const& html) override;

    [[nodiscard]] std::optional<Url> url() const override;
    void evaluateJavaScript(std::string const& script, EvaluationDone done) override;
    [[nodiscard]] std::shared_ptr<View> view() override;

    // Borrowed.
    [[nodiscard]] WebKitWebView* engineView() const { return engine.get(); }

private:
    void connectSignals();

    gboolean decidePolicy(WebKitWebView* emitter, WebKitPolicyDecision* decision,
                          WebKitPolicyDecisionType type);
    GtkWidget* createWindow(WebKitWebView* emitter, WebKitNavigationAction* action);
    void loadChanged(WebKitWebView* emitter, WebKitLoadEvent event);
    gboolean loadFailed(WebKitWebView* emitter, WebKitLoadEvent during, char const* uri, GError* error);
    void resourceLoadStarted(WebKitWebView* emitter, WebKitWebResource* resource, WebKitURIRequest* request);
    void mainResourceFinished(WebKitWebResource* emitter);
    void progressed(WebKitWebView* emitter, GParamSpec* property);
    void webProcessTerminated(WebKitWebView* emitter, WebKitWebProcessTerminationReason reason);

    [[nodiscard]] std::string engineUri() const;
    [[nodiscard]] NavigationActionPolicy askPolicy(std::string const& uri);
    [[nodiscard]] NavigationReport track(WebKitLoadEvent event);
    void deliver(NavigationReport const& report);

    void loadRequested();
    void armRequestTimer();
    void disarmRequestTimer();
    void disarmRequestTimerUnlessAwaited();
    void stopLateLoad();

    MainLoop& mainLoop;
    std::shared_ptr<Log> const log;
    std::shared_ptr<GtkUserContentController> const controller;
    GRef<WebKitWebView> const engine;
    GtkView shownView;
    std::weak_ptr<NavigationDelegate> navigationDelegate;
    NavigationTracker tracker;
    Seconds requestTimeout{UrlRequest{}.timeout};
    std::unique_ptr<Timer> requestTimer;
    std::shared_ptr<GtkPageRestrictions> const restrictions;
    std::vector<GSignal> connections;
    GSignal mainResourceConnection;
};

} // namespace fcp
