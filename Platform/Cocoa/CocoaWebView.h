#pragma once

#include "Platform/Cocoa/CocoaView.h"
#include "Platform/Cocoa/RetainPtr.h"
#include "Ports/WebView.h"

#import <WebKit/WebKit.h>

@class FcpNavigationDelegate;

namespace fcp {

class CocoaUserContentController;

// One web view of the system's. What it reports is passed on as it comes.
class CocoaWebView final : public WebView, public std::enable_shared_from_this<CocoaWebView> {
public:
    CocoaWebView(RetainPtr<WKWebView*> const& nativeWebView,
                 std::shared_ptr<CocoaUserContentController> userContent);
    ~CocoaWebView() override;

    CocoaWebView(CocoaWebView const&) = delete;
    CocoaWebView& operator=(CocoaWebView const&) = delete;

    void setNavigationDelegate(std::weak_ptr<NavigationDelegate> delegate) override;
    void setAutoresizing(Autoresizing mask) override;
    [[nodiscard]] bool markInspectable() override;
    void load(UrlRequest const& request) override;
    void loadHTMLString(std::string const& html) override;
    [[nodiscard]] std::optional<Url> url() const override;
    void evaluateJavaScript(std::string const& script, EvaluationDone done) override;
    [[nodiscard]] std::shared_ptr<View> view() override;

private:
    std::shared_ptr<CocoaUserContentController> const controller;
    RetainPtr<WKWebView*> const webView;
    CocoaView shownView;
    RetainPtr<FcpNavigationDelegate*> navigationDelegate; // the web view does not retain it
};

} // namespace fcp
