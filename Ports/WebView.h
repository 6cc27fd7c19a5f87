#pragma once

#include "Ports/Json.h"
#include "Ports/Url.h"
#include "Ports/View.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace fcp {

class WebView;

// One message that a page posted. A platform delivers cleaned values only: text is UTF-8, nesting is bounded.
struct ScriptMessage {
    std::string name;
    Json body;
};

class UserContentController;

// Implemented by the panel. Called on the main thread; the callee may drop its last owner during the call.
class ScriptMessageHandler {
public:
    virtual ~ScriptMessageHandler() = default;
    virtual void userContentController(UserContentController& controller, ScriptMessage const& message) = 0;
};

// The page's named message handlers. It shares the ownership of what is registered. Main thread only.
class UserContentController {
public:
    virtual ~UserContentController() = default;

    // A name may be taken only once at a time.
    virtual void addScriptMessageHandler(std::shared_ptr<ScriptMessageHandler> handler,
                                         std::string const& name) = 0;

    virtual void removeAllScriptMessageHandlers() = 0;
};

struct WebViewPreferences {
    bool developerExtrasEnabled = false;
};

struct WebViewConfiguration {
    std::shared_ptr<UserContentController> userContentController;
    WebViewPreferences preferences;
};

// The protocol's own cache policy is meant; a load fails after `timeout` without its main resource.
struct UrlRequest {
    Url url;
    double timeout = 60.0; // seconds
};

// Why a load failed, in the terms of the URL-loading system ("NSURLErrorDomain" and its codes).
struct NavigationError {
    std::string domain;
    std::int64_t code = 0;
    std::string localizedDescription;
};

struct NavigationAction {
    std::optional<Url> url; // the request's
};

enum class NavigationActionPolicy { Cancel, Allow };

// Told what becomes of a load. Implemented by the panel; called on the main thread.
class NavigationDelegate {
public:
    virtual ~NavigationDelegate() = default;

    virtual void didFinish(WebView& webView) = 0;
    virtual void didFail(WebView& webView, NavigationError const& error) = 0;
    virtual void didFailProvisionalNavigation(WebView& webView, NavigationError const& error) = 0;

    // `decisionHandler` is called exactly once, before this returns.
    virtual void decidePolicyFor(WebView& webView, NavigationAction const& action,
                                 std::function<void(NavigationActionPolicy)> const& decisionHandler) = 0;
};

// None when the script ran, else the platform's description of what went wrong.
using EvaluationDone = std::function<void(std::optional<std::string> const& error)>;

// The page, seen from the native side. Main thread only; callbacks arrive there too.
class WebView {
public:
    virtual ~WebView() = default;

    // Borrowed: the delegate may go first.
    virtual void setNavigationDelegate(std::weak_ptr<NavigationDelegate> delegate) = 0;

    virtual void setAutoresizing(Autoresizing mask) = 0;

    // False, and nothing is done, on a system that knows no such mark.
    [[nodiscard]] virtual bool markInspectable() = 0;

    virtual void load(UrlRequest const& request) = 0;

    // Without a base URL.
    virtual void loadHTMLString(std::string const& html) = 0;

    // The current address, none before the first load.
    [[nodiscard]] virtual std::optional<Url> url() const = 0;

    // Scripts run in the order of the calls, in whatever document is shown then. `done` may run after the
    // caller is gone, and not at all when the web view goes first.
    virtual void evaluateJavaScript(std::string const& script, EvaluationDone done) = 0;

    // The web view as a subview. It shares the web view's ownership.
    [[nodiscard]] virtual std::shared_ptr<View> view() = 0;
};

class WebEngine {
public:
    virtual ~WebEngine() = default;

    [[nodiscard]] virtual std::shared_ptr<UserContentController> makeUserContentController() = 0;

    // Default-initialised: no frame, no configuration.
    [[nodiscard]] virtual std::shared_ptr<WebView> makeWebView() = 0;

    [[nodiscard]] virtual std::shared_ptr<WebView> makeWebView(Rect const& frame,
                                                               WebViewConfiguration const& configuration) = 0;
};

} // namespace fcp
