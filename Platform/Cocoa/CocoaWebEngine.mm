#include "Platform/Cocoa/CocoaWebEngine.h"

#include "Platform/Cocoa/CocoaUserContentController.h"
#include "Platform/Cocoa/CocoaWebView.h"
#include "Platform/Cocoa/Drawing.h"

namespace fcp {

namespace {

// The key has no property of its own; it opens the inspector's menu entry on every system.
RetainPtr<WKPreferences*> makePreferences(WebViewPreferences const& wanted) {
    auto preferences = RetainPtr<WKPreferences*>::adopt([[WKPreferences alloc] init]);
    [preferences.get() setValue:[NSNumber numberWithBool:wanted.developerExtrasEnabled ? YES : NO]
                         forKey:@"developerExtrasEnabled"];
    return preferences;
}

} // namespace

std::shared_ptr<UserContentController> CocoaWebEngine::makeUserContentController() {
    return std::make_shared<CocoaUserContentController>();
}

std::shared_ptr<WebView> CocoaWebEngine::makeWebView() {
    return std::make_shared<CocoaWebView>(RetainPtr<WKWebView*>::adopt([[WKWebView alloc] init]), nullptr);
}

std::shared_ptr<WebView> CocoaWebEngine::makeWebView(Rect const& frame,
                                                     WebViewConfiguration const& configuration) {
    auto controller =
        std::static_pointer_cast<CocoaUserContentController>(configuration.userContentController);
    auto const native = RetainPtr<WKWebViewConfiguration*>::adopt([[WKWebViewConfiguration alloc] init]);
    if (controller)
        [native.get() setUserContentController:controller->native()];
    [native.get() setPreferences:makePreferences(configuration.preferences).get()];
    auto const webView = RetainPtr<WKWebView*>::adopt([[WKWebView alloc] initWithFrame:makeRect(frame)
                                                                         configuration:native.get()]);
    return std::make_shared<CocoaWebView>(webView, std::move(controller));
}

} // namespace fcp
