#pragma once

#include "Ports/MainLoop.h"
#include "Ports/Platform.h"
#include "Ports/WebView.h"

#include <memory>
#include <string>

namespace fcp {

class Log;
class MessageHandler;

// The panel's shell and principal class: builds the web view and the two native overlays over it, connects
// the bridge to the host editor and the container application, chooses what to load, and is the web view's
// navigation delegate. A platform makes one for each panel, calls loadView and then viewDidLoad, and shows
// the view that was installed meanwhile. Main thread only.
//
// Destruction only lets go: timers, script handlers and the response observer stay, and find nobody.
class ViewController final : public NavigationDelegate, public std::enable_shared_from_this<ViewController> {
public:
    [[nodiscard]] static std::shared_ptr<ViewController> create(Platform const& platform);
    ~ViewController() override;

    ViewController(ViewController const&) = delete;
    ViewController& operator=(ViewController const&) = delete;

    // Builds everything and starts loading. Once.
    void loadView();

    // After loadView, and after whatever the platform's own class does here. Once.
    void viewDidLoad();

    // The retry button's action.
    void retryConnection();

    void didFinish(WebView& finished) override;
    void didFail(WebView& view, NavigationError const& error) override;
    void didFailProvisionalNavigation(WebView& view, NavigationError const& error) override;
    void decidePolicyFor(WebView& view, NavigationAction const& action,
                         std::function<void(NavigationActionPolicy)> const& decisionHandler) override;

private:
    explicit ViewController(Platform const& ports);

    // Asked at every access, so that a marker file counts from the next load on.
    [[nodiscard]] bool isDiagMode() const;
    [[nodiscard]] bool isDevMode() const;
    [[nodiscard]] Url panelURL() const;

    void registerThrowAwayHandler(UserContentController& contentController);
    void buildWebView(WebViewConfiguration const& configuration);
    void registerHandler(UserContentController& contentController);
    void buildContainer();
    void loadContent();
    void loadPanelURL();
    void setupContainerConnection();

    void buildLoadingOverlay(View& container);
    void buildErrorOverlay(View& container);
    void showLoading();
    void hideLoadingOverlay();
    void showError(std::string const& message);

    using TimerTask = void (*)(Log& log, ViewController* controller);
    [[nodiscard]] std::unique_ptr<Timer> scheduleTimer(double seconds, TimerTask task);
    static void loadTimedOut(Log& log, ViewController* controller);
    static void autoReveal(Log& log, ViewController* controller);
    void invalidateTimers();

    std::shared_ptr<Log> const log;
    std::shared_ptr<WebView> webView;
    std::shared_ptr<MessageHandler> messageHandler;
    std::shared_ptr<View> loadingOverlay;
    std::shared_ptr<View> errorOverlay;
    std::shared_ptr<View> loadingLabel;
    std::shared_ptr<View> errorDetailLabel;
    std::shared_ptr<View> retryButton;
    // Invalidated timers stay here until showLoading replaces them.
    std::unique_ptr<Timer> loadTimeout;
    std::unique_ptr<Timer> autoRevealTimer;
    // The reveal comes first and stops the time-out: that one shows only after an early reveal was stopped
    // itself.
    static constexpr double loadTimeoutSeconds = 30.0;
    static constexpr double autoRevealSeconds = 4.0;

    std::shared_ptr<View> view;
    Platform const platform;
};

} // namespace fcp
