#include "Platform/Cocoa/CocoaWebView.h"

#include "Platform/Cocoa/Availability.h"
#include "Platform/Cocoa/CocoaUserContentController.h"
#include "Platform/Cocoa/Conversions.h"
#include "Platform/Cocoa/Drawing.h"

#include <utility>

// The web view's delegate. Either end may go first.
@interface FcpNavigationDelegate : NSObject <WKNavigationDelegate> {
    std::weak_ptr<fcp::WebView> webView;
    std::weak_ptr<fcp::NavigationDelegate> delegate;
}
- (instancetype)initWithWebView:(std::weak_ptr<fcp::WebView>)reporting
                       delegate:(std::weak_ptr<fcp::NavigationDelegate>)told;
@end

@implementation FcpNavigationDelegate

- (instancetype)initWithWebView:(std::weak_ptr<fcp::WebView>)reporting
                       delegate:(std::weak_ptr<fcp::NavigationDelegate>)told {
    if ((self = [super init])) {
        webView = std::move(reporting);
        delegate = std::move(told);
    }
    return self;
}

// Calls `report` while there are both ends, and keeps them until it returns.
- (void)deliver:(std::function<void(fcp::NavigationDelegate&, fcp::WebView&)> const&)report {
    auto const told = delegate.lock();
    auto const reporting = webView.lock();
    if (told && reporting)
        report(*told, *reporting);
}

- (void)webView:(WKWebView*)sender didFinishNavigation:(WKNavigation*)navigation {
    (void)sender, (void)navigation;
    [self deliver:[](auto& told, auto& reporting) { told.didFinish(reporting); }];
}

- (void)webView:(WKWebView*)sender didFailNavigation:(WKNavigation*)navigation withError:(NSError*)error {
    (void)sender, (void)navigation;
    [self deliver:[error](auto& told, auto& reporting) { told.didFail(reporting, fcp::readError(error)); }];
}

- (void)webView:(WKWebView*)sender
    didFailProvisionalNavigation:(WKNavigation*)navigation
                       withError:(NSError*)error {
    (void)sender, (void)navigation;
    [self deliver:[error](auto& told, auto& reporting) {
        told.didFailProvisionalNavigation(reporting, fcp::readError(error));
    }];
}

// The system raises when its handler is called twice or never; so it is called here, once on every path. With
// nobody to ask everything is allowed, as without a delegate.
- (void)webView:(WKWebView*)sender
    decidePolicyForNavigationAction:(WKNavigationAction*)action
                    decisionHandler:(void (^)(WKNavigationActionPolicy))decisionHandler {
    (void)sender;
    auto policy = fcp::NavigationActionPolicy::Allow;
    [self deliver:[action, &policy](auto& told, auto& reporting) {
        policy = fcp::NavigationActionPolicy::Cancel;
        told.decidePolicyFor(reporting, {fcp::readUrl([[action request] URL])},
                             [&policy](fcp::NavigationActionPolicy decision) { policy = decision; });
    }];
    decisionHandler(policy == fcp::NavigationActionPolicy::Allow ? WKNavigationActionPolicyAllow
                                                                 : WKNavigationActionPolicyCancel);
}

@end

namespace fcp {

CocoaWebView::CocoaWebView(RetainPtr<WKWebView*> const& nativeWebView,
                           std::shared_ptr<CocoaUserContentController> userContent)
    : controller(std::move(userContent))
    , webView(nativeWebView)
    , shownView(nativeWebView.get()) {}

CocoaWebView::~CocoaWebView() {
    [webView.get() setNavigationDelegate:nil];
}

void CocoaWebView::setNavigationDelegate(std::weak_ptr<NavigationDelegate> delegate) {
    navigationDelegate = RetainPtr<FcpNavigationDelegate*>::adopt(
        [[FcpNavigationDelegate alloc] initWithWebView:weak_from_this() delegate:std::move(delegate)]);
    [webView.get() setNavigationDelegate:navigationDelegate.get()];
}

void CocoaWebView::setAutoresizing(Autoresizing mask) {
    [webView.get() setAutoresizingMask:makeMask(mask)];
}

bool CocoaWebView::markInspectable() {
    if (FCP_IS_MACOS_13_3) {
        [webView.get() setInspectable:YES];
        return true;
    }
    return false;
}

void CocoaWebView::load(UrlRequest const& request) {
    [webView.get() loadRequest:[NSURLRequest requestWithURL:makeUrl(request.url).get()
                                                cachePolicy:NSURLRequestUseProtocolCachePolicy
                                            timeoutInterval:request.timeout]];
}

void CocoaWebView::loadHTMLString(std::string const& html) {
    [webView.get() loadHTMLString:makeString(html).get() baseURL:nil];
}

std::optional<Url> CocoaWebView::url() const {
    return readUrl([webView.get() URL]);
}

void CocoaWebView::evaluateJavaScript(std::string const& script, EvaluationDone done) {
    [webView.get() evaluateJavaScript:makeString(script).get()
                    completionHandler:^(id, NSError* error) {
                      if (done)
                          done(error ? std::optional(readError(error).localizedDescription) : std::nullopt);
                    }];
}

std::shared_ptr<View> CocoaWebView::view() {
    return {shared_from_this(), &shownView};
}

} // namespace fcp
