#include "Platform/Gtk/GtkWebView.h"

#include "Platform/Gtk/Conversions.h"
#include "Platform/Gtk/GtkPageRestrictions.h"
#include "Platform/Gtk/GtkUserContentController.h"
#include "Platform/Gtk/NavigationErrors.h"
#include "Ports/Log.h"

#include <utility>

namespace fcp {

namespace {

GRef<WebKitSettings> makeSettings(WebViewPreferences const& preferences) {
    // Without acceleration a web process is smaller by tens of megabytes and needs no GPU. A page must not
    // cover the host's screen, and may ask for windows, so that the navigation policy hears of them.
    return GRef<WebKitSettings>::adopt(webkit_settings_new_with_settings(
        "hardware-acceleration-policy", WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER, "enable-fullscreen", FALSE,
        "javascript-can-open-windows-automatically", TRUE, "enable-developer-extras",
        static_cast<gboolean>(preferences.developerExtrasEnabled), nullptr));
}

GRef<WebKitWebView> makeEngineView(WebViewPreferences const& preferences, WebKitUserContentManager* manager) {
    auto const settings = makeSettings(preferences);
    return GRef<WebKitWebView>::retain(WEBKIT_WEB_VIEW(g_object_new(
        WEBKIT_TYPE_WEB_VIEW, "settings", settings.get(), "user-content-manager", manager, nullptr)));
}

std::string requestUri(WebKitNavigationAction* action) {
    char const* uri = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
    return uri ? uri : "";
}

NetworkAvailability networkAvailability() {
    return g_network_monitor_get_network_available(g_network_monitor_get_default())
               ? NetworkAvailability::Available
               : NetworkAvailability::Unavailable;
}

char const* reasonText(WebKitWebProcessTerminationReason reason) {
    switch (reason) {
    case WEBKIT_WEB_PROCESS_CRASHED:
        return "it crashed";
    case WEBKIT_WEB_PROCESS_EXCEEDED_MEMORY_LIMIT:
        return "it exceeded its memory limit";
    case WEBKIT_WEB_PROCESS_TERMINATED_BY_API:
        return "it was told to";
    }
    return "unknown reason";
}

// Runs for a web view that may be gone on our side: a running script keeps only the engine's object alive.
void finishEvaluation(GObject* source, GAsyncResult* result, gpointer data) {
    std::unique_ptr<EvaluationDone> const done(static_cast<EvaluationDone*>(data));
    GError* failure = nullptr;
    auto const value = GRef<JSCValue>::adopt(
        webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(source), result, &failure));
    GErrorPtr const error(failure);
    (*done)(error ? std::optional(description(*error)) : std::nullopt);
}

} // namespace

GtkWebView::GtkWebView(MainLoop& loop, std::shared_ptr<Log> webViewLog, Rect const& frame,
                       WebViewPreferences const& preferences,
                       std::shared_ptr<GtkUserContentController> userContent)
    : mainLoop(loop)
    , log(std::move(webViewLog))
    , controller(std::move(userContent))
    , engine(makeEngineView(preferences, controller->manager()))
    , shownView(GTK_WIDGET(engine.get()), frame)
    , restrictions(std::make_shared<GtkPageRestrictions>(engine.get())) {
    connectSignals();
}

GtkWebView::~GtkWebView() {
    disarmRequestTimer();
}

void GtkWebView::connectSignals() {
    using Self = GtkWebView;
    auto* const view = engine.get();
    connections.push_back(GSignal::connect<&Self::decidePolicy>(view, "decide-policy", this));
    connections.push_back(GSignal::connect<&Self::createWindow>(view, "create", this));
    connections.push_back(GSignal::connect<&Self::loadChanged>(view, "load-changed", this));
    connections.push_back(GSignal::connect<&Self::loadFailed>(view, "load-failed", this));
    connections.push_back(GSignal::connect<&Self::resourceLoadStarted>(view, "resource-load-started", this));
    connections.push_back(GSignal::connect<&Self::progressed>(view, "notify::estimated-load-progress", this));
    connections.push_back(
        GSignal::connect<&Self::webProcessTerminated>(view, "web-process-terminated", this));
}

void GtkWebView::setNavigationDelegate(std::weak_ptr<NavigationDelegate> delegate) {
    navigationDelegate = std::move(delegate);
}

void GtkWebView::setAutoresizing(Autoresizing mask) {
    shownView.setAutoresizing(mask);
}

bool GtkWebView::markInspectable() {
    return false;
}

void GtkWebView::load(UrlRequest const& request) {
    requestTimeout = Seconds(request.timeout);
    webkit_web_view_load_uri(engine.get(), request.url.absoluteString.c_str());
    loadRequested();
}

void GtkWebView::loadHTMLString(std::string const& html) {
    webkit_web_view_load_html(engine.get(), html.c_str(), nullptr);
    loadRequested();
}

void GtkWebView::loadRequested() {
    // The address as the engine spells it is the one that its events will name.
    tracker.requested(engineUri());
    if (tracker.awaitsMainResource())
        armRequestTimer();
}

std::optional<Url> GtkWebView::url() const {
    return urlFromEngine(webkit_web_view_get_uri(engine.get()));
}

void GtkWebView::evaluateJavaScript(std::string const& script, EvaluationDone done) {
    auto const callback = done ? finishEvaluation : nullptr;
    auto* const data = done ? new EvaluationDone(std::move(done)) : nullptr;
    webkit_web_view_evaluate_javascript(engine.get(), script.data(), static_cast<gssize>(script.size()),
                                        nullptr, nullptr, nullptr, callback, data);
}

std::shared_ptr<View> GtkWebView::view() {
    return {shared_from_this(), &shownView};
}

gboolean GtkWebView::decidePolicy(WebKitWebView*, WebKitPolicyDecision* decision,
                                  WebKitPolicyDecisionType type) {
    if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE)
        return FALSE;
    auto const uri = requestUri(
        webkit_navigation_policy_decision_get_navigation_action(WEBKIT_NAVIGATION_POLICY_DECISION(decision)));
    auto const policy = askPolicy(uri);
    tracker.decided(uri, policy);
    disarmRequestTimerUnlessAwaited();
    if (policy == NavigationActionPolicy::Cancel) {
        webkit_policy_decision_ignore(decision);
        return TRUE;
    }
    if (type == WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION)
        tracker.newWindowAllowed(uri);
    webkit_policy_decision_use(decision);
    return TRUE;
}

GtkWidget* GtkWebView::createWindow(WebKitWebView*, WebKitNavigationAction* action) {
    // A script's new window comes here without having passed the policy. Its answer matters only for what the
    // policy does with a foreign address: the panel opens no further windows.
    auto const uri = requestUri(action);
    if (!tracker.takeAllowedNewWindow(uri))
        static_cast<void>(askPolicy(uri));
    return nullptr;
}

NavigationActionPolicy GtkWebView::askPolicy(std::string const& uri) {
    auto const delegate = navigationDelegate.lock();
    if (!delegate)
        return NavigationActionPolicy::Allow;
    auto policy = NavigationActionPolicy::Cancel;
    delegate->decidePolicyFor(*this, {urlFromEngine(uri.c_str())},
                              [&policy](NavigationActionPolicy answer) { policy = answer; });
    return policy;
}

void GtkWebView::loadChanged(WebKitWebView*, WebKitLoadEvent event) {
    auto const report = track(event);
    if (event != WEBKIT_LOAD_FINISHED && tracker.awaitsMainResource())
        armRequestTimer();
    disarmRequestTimerUnlessAwaited();
    deliver(report);
}

NavigationReport GtkWebView::track(WebKitLoadEvent event) {
    switch (event) {
    case WEBKIT_LOAD_STARTED:
        tracker.started(engineUri());
        return {};
    case WEBKIT_LOAD_REDIRECTED:
        tracker.redirected();
        return {};
    case WEBKIT_LOAD_COMMITTED:
        return tracker.committed(engineUri());
    case WEBKIT_LOAD_FINISHED:
        return tracker.finished();
    }
    return {};
}

gboolean GtkWebView::loadFailed(WebKitWebView*, WebKitLoadEvent during, char const* uri, GError* error) {
    auto const phase = during == WEBKIT_LOAD_COMMITTED ? LoadPhase::Committed : LoadPhase::Provisional;
    auto const report =
        tracker.failed(phase, uri, navigationError(loadFailure(*error), networkAvailability()));
    disarmRequestTimerUnlessAwaited();
    deliver(report);
    // The engine would otherwise show an error page of its own and report that as a success.
    return TRUE;
}

void GtkWebView::deliver(NavigationReport const& report) {
    auto const delegate = navigationDelegate.lock();
    if (!delegate)
        return;
    switch (report.kind) {
    case NavigationReport::Kind::Nothing:
        break;
    case NavigationReport::Kind::Finished:
        delegate->didFinish(*this);
        break;
    case NavigationReport::Kind::Failed:
        delegate->didFail(*this, report.error);
        break;
    case NavigationReport::Kind::FailedProvisionally:
        delegate->didFailProvisionalNavigation(*this, report.error);
        break;
    }
}

void GtkWebView::resourceLoadStarted(WebKitWebView*, WebKitWebResource* resource, WebKitURIRequest*) {
    if (resource == webkit_web_view_get_main_resource(engine.get()))
        mainResourceConnection =
            GSignal::connect<&GtkWebView::mainResourceFinished>(resource, "finished", this);
}

void GtkWebView::mainResourceFinished(WebKitWebResource*) {
    mainResourceConnection = {};
    tracker.mainResourceCompleted();
    disarmRequestTimerUnlessAwaited();
}

void GtkWebView::progressed(WebKitWebView*, GParamSpec*) {
    // Data has arrived: the time-out is for a server that is silent, not for a long page.
    if (tracker.awaitsMainResource())
        armRequestTimer();
}

void GtkWebView::webProcessTerminated(WebKitWebView*, WebKitWebProcessTerminationReason reason) {
    tracker.processTerminated();
    mainResourceConnection = {};
    disarmRequestTimer();
    log->error(std::string("The web process has ended: ") + reasonText(reason));
}

std::string GtkWebView::engineUri() const {
    char const* uri = webkit_web_view_get_uri(engine.get());
    return uri ? uri : "";
}

void GtkWebView::armRequestTimer() {
    disarmRequestTimer();
    requestTimer = mainLoop.timer(requestTimeout, [weak = weak_from_this()] {
        if (auto const self = weak.lock())
            self->stopLateLoad();
    });
}

void GtkWebView::disarmRequestTimer() {
    if (auto const timer = std::exchange(requestTimer, nullptr))
        timer->invalidate();
}

void GtkWebView::disarmRequestTimerUnlessAwaited() {
    if (!tracker.awaitsMainResource())
        disarmRequestTimer();
}

void GtkWebView::stopLateLoad() {
    auto const report = tracker.timedOut();
    webkit_web_view_stop_loading(engine.get());
    deliver(report);
}

} // namespace fcp
