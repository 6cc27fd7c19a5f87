#include "FcpExtension/ViewController.h"

#include "FcpExtension/ContainerAppBridge.h"
#include "FcpExtension/DiagnosticPage.h"
#include "FcpExtension/FatalError.h"
#include "FcpExtension/MessageHandler.h"
#include "FcpExtension/NavigationRules.h"
#include "FcpExtension/OverlayViews.h"
#include "FcpExtension/ServiceHosts.h"
#include "Ports/FileManager.h"
#include "Ports/Log.h"
#include "Ports/NotificationCenter.h"
#include "Ports/Workspace.h"

#include <array>
#include <cstdio>

namespace fcp {

namespace {

constexpr char const* bridgeName = "fcpBridge";
constexpr Seconds connectedNoticeDelay{0.5};

} // namespace

std::shared_ptr<ViewController> ViewController::create(Platform const& platform) {
    return std::shared_ptr<ViewController>(new ViewController(platform));
}

ViewController::ViewController(Platform const& ports)
    : log(ports.logs.makeLog("ai.zelvix.fcp.extension", "ViewController"))
    , platform(ports) {}

ViewController::~ViewController() = default;

bool ViewController::isDiagMode() const {
    return platform.fileManager.fileExists("/tmp/zelvix-fcp-diag");
}

bool ViewController::isDevMode() const {
    return platform.fileManager.fileExists("/tmp/zelvix-fcp-dev");
}

Url ViewController::panelURL() const {
    auto const convert = [this](std::string const& text) {
        auto url = platform.urlParser.parse(text);
        if (!url)
            fatalError(failedConversion);
        return *std::move(url);
    };
    if (isDiagMode())
        return convert("about:blank");
    if (isDevMode())
        return convert("http://localhost:3000/fcp-panel/login");
    return convert("https://" + std::string(primaryHost) + "/fcp-panel/login");
}

void ViewController::loadView() {
    log->info("loadView starting, panelURL: " + panelURL().absoluteString);
    WebViewConfiguration configuration;
    configuration.userContentController = platform.webEngine.makeUserContentController();
    auto& contentController = *configuration.userContentController;
    registerThrowAwayHandler(contentController);
    configuration.preferences.developerExtrasEnabled =
        true; // in every mode, so that support can look at any panel
    buildWebView(configuration);
    registerHandler(contentController);
    buildContainer();
    buildLoadingOverlay(*view);
    buildErrorOverlay(*view);
    showLoading();
    loadContent();
    log->info("loadView complete, loading started");
}

// Kept on purpose: the name is taken, and the host sees a first handler, before the real web view exists. The
// view made here is never shown and gone when this returns.
void ViewController::registerThrowAwayHandler(UserContentController& contentController) {
    auto const unseen = platform.webEngine.makeWebView();
    messageHandler = MessageHandler::create(unseen, platform);
    contentController.addScriptMessageHandler(messageHandler, bridgeName);
}

void ViewController::buildWebView(WebViewConfiguration const& configuration) {
    webView = platform.webEngine.makeWebView({0, 0, 400, 700}, configuration);
    webView->setNavigationDelegate(weak_from_this());
    webView->setAutoresizing(Autoresizing::FlexibleWidth | Autoresizing::FlexibleHeight);
    if (webView->markInspectable())
        log->info(
            "Web Inspector enabled \u2014 open Safari \u2192 Develop \u2192 This Mac \u2192 FCP Extension");
}

void ViewController::registerHandler(UserContentController& contentController) {
    messageHandler = MessageHandler::create(webView, platform);
    contentController.removeAllScriptMessageHandlers();
    contentController.addScriptMessageHandler(messageHandler, bridgeName);
}

void ViewController::buildContainer() {
    view = platform.userInterface.makeView(containerView());
    platform.userInterface.installView(view);
    view->addSubview(required(webView).view());
}

void ViewController::loadContent() {
    if (isDiagMode()) {
        required(webView).loadHTMLString(std::string(diagnosticPage));
        log->info("Diagnostic mode: loading inline HTML");
    } else {
        loadPanelURL();
    }
}

void ViewController::loadPanelURL() {
    required(webView).load(UrlRequest{panelURL()});
}

void ViewController::viewDidLoad() {
    setupContainerConnection();
}

void ViewController::setupContainerConnection() {
    auto const bridge =
        ContainerAppBridge::create(platform.notificationCenter, platform.uuids, platform.mainLoop);
    required(messageHandler).setContainerBridge(bridge);
    // The observer is never removed: it keeps the bridge as long as the process, so that every answer finds
    // its request, whatever becomes of the panel.
    platform.notificationCenter.observe(
        "com.zelvix.fcp.containerResponse",
        [bridge](Notification const& notification) { bridge->handleResponse(notification); });
}

void ViewController::buildLoadingOverlay(View& container) {
    auto& userInterface = platform.userInterface;
    auto const bounds = container.bounds();
    loadingOverlay = userInterface.makeView(loadingOverlayView(bounds));
    loadingOverlay->addSubview(userInterface.makeView(loadingSpinner()));
    loadingLabel = userInterface.makeView(loadingStatusLabel(bounds));
    loadingOverlay->addSubview(loadingLabel);
    container.addSubview(loadingOverlay);
}

void ViewController::buildErrorOverlay(View& container) {
    auto& userInterface = platform.userInterface;
    auto const bounds = container.bounds();
    errorOverlay = userInterface.makeView(errorOverlayView(bounds));
    errorOverlay->addSubview(userInterface.makeView(accentBar(bounds)));
    errorOverlay->addSubview(userInterface.makeView(offlineLabel(bounds)));
    errorOverlay->addSubview(userInterface.makeView(connectionPausedLabel(bounds)));
    errorDetailLabel = userInterface.makeView(errorDetailText(bounds));
    errorOverlay->addSubview(errorDetailLabel);
    retryButton = userInterface.makeView(retryConnectionButton([weak = weak_from_this()] {
        if (auto const self = weak.lock())
            self->retryConnection();
    }));
    errorOverlay->addSubview(retryButton);
    container.addSubview(errorOverlay);
}

void ViewController::showLoading() {
    log->info("showLoading");
    if (loadTimeout)
        loadTimeout->invalidate();
    loadTimeout = scheduleTimer(loadTimeoutSeconds, &ViewController::loadTimedOut);
    if (autoRevealTimer)
        autoRevealTimer->invalidate();
    autoRevealTimer = scheduleTimer(autoRevealSeconds, &ViewController::autoReveal);
    required(loadingOverlay).show();
    required(errorOverlay).hide();
}

// A timer outlives its controller and still writes its line, then to the default log.
std::unique_ptr<Timer> ViewController::scheduleTimer(double seconds, TimerTask task) {
    return platform.mainLoop.timer(Seconds(seconds), [weak = weak_from_this(), logs = &platform.logs, task] {
        auto const self = weak.lock();
        task(self ? *self->log : logs->defaultLog(), self.get());
    });
}

void ViewController::loadTimedOut(Log& log, ViewController* controller) {
    std::array<char, 64> line{};
    std::snprintf(line.data(), line.size(), "Load timed out after %.0fs", loadTimeoutSeconds);
    log.error(line.data());
    if (controller)
        controller->showError("The workspace took too long to respond. Check your connection and retry.");
}

void ViewController::autoReveal(Log& log, ViewController* controller) {
    log.info("Auto-reveal timer fired \u2014 hiding overlay");
    if (controller)
        controller->hideLoadingOverlay();
}

void ViewController::invalidateTimers() {
    if (loadTimeout)
        loadTimeout->invalidate();
    if (autoRevealTimer)
        autoRevealTimer->invalidate();
}

// The error overlay stays as it is: once shown, only a retry takes it away, also when a later load finishes.
// Each hiding announces the bridge, so that a page normally hears of it twice per load.
void ViewController::hideLoadingOverlay() {
    log->info("hideLoadingOverlay \u2014 revealing WebView");
    invalidateTimers();
    required(loadingOverlay).hide();
    platform.mainLoop.after(connectedNoticeDelay, [weak = weak_from_this()] {
        if (auto const self = weak.lock())
            required(self->messageHandler).notifyConnected();
    });
}

void ViewController::showError(std::string const& message) {
    log->error("showError: " + message);
    invalidateTimers();
    required(loadingOverlay).hide();
    required(errorOverlay).show();
    if (errorDetailLabel)
        errorDetailLabel->setText(message);
    if (view->isInWindow())
        view->makeFirstResponder(retryButton.get());
}

void ViewController::retryConnection() {
    log->info("retryConnection");
    showLoading();
    if (loadingLabel)
        loadingLabel->setText("Reopening your review workspace\u2026"); // and stays so for all later loads
    loadPanelURL(); // in diagnostic mode too: only the first load shows the inline page
}

void ViewController::didFinish(WebView& finished) {
    auto const url = finished.url();
    log->info("didFinish: " + (url ? url->absoluteString : "nil"));
    hideLoadingOverlay();
}

// Never looks at the code: only a load that failed before it was committed tells being offline from other
// causes.
void ViewController::didFail(WebView&, NavigationError const& error) {
    log->error("didFail: " + error.localizedDescription);
    showError(std::string(connectionFailedMessage));
}

void ViewController::didFailProvisionalNavigation(WebView&, NavigationError const& error) {
    log->error("didFailProvisional: [" + error.domain + ":" + std::to_string(error.code) + "] " +
               error.localizedDescription);
    showError(std::string(provisionalFailureMessage(error)));
}

void ViewController::decidePolicyFor(WebView&, NavigationAction const& action,
                                     std::function<void(NavigationActionPolicy)> const& decisionHandler) {
    auto const decision = decideNavigation(action.url);
    if (decision == NavigationDecision::CancelSilently)
        return decisionHandler(NavigationActionPolicy::Cancel);
    auto const& url = *action.url;
    log->debug("navigate policy: " + url.absoluteString);
    if (decision == NavigationDecision::Allow)
        return decisionHandler(NavigationActionPolicy::Allow);
    log->info("Opening external URL: " + url.absoluteString);
    platform.workspace.open(url); // by the desktop, never by the container application
    decisionHandler(NavigationActionPolicy::Cancel);
}

} // namespace fcp
