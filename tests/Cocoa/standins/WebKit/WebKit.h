#pragma once

#import <AppKit/AppKit.h>

// The web view as the public reference describes it: what the back end uses, and no more.

// What the availability check asks here.
[[nodiscard]] bool standinIsMacOS13_3();

@class WKNavigation;
@class WKScriptMessage;
@class WKUserContentController;
@class WKWebView;

@protocol WKScriptMessageHandler <NSObject>
- (void)userContentController:(WKUserContentController*)controller
      didReceiveScriptMessage:(WKScriptMessage*)message;
@end

@interface WKScriptMessage : NSObject {
    id messageBody;
    NSString* handlerName;
}
- (instancetype)initWithBody:(id)body name:(NSString*)name;
@property(nonatomic, readonly) id body;
@property(nonatomic, readonly) NSString* name;
@end

@interface WKUserContentController : NSObject {
    NSMutableDictionary* handlers;
}
- (void)addScriptMessageHandler:(id<WKScriptMessageHandler>)handler name:(NSString*)name;
- (void)removeAllScriptMessageHandlers;

// What a page does. False when nobody has the name.
- (bool)standinPost:(id)body name:(NSString*)name;
- (NSUInteger)standinHandlers;
@end

// "developerExtrasEnabled" is no property: the key alone leads to it.
@interface WKPreferences : NSObject {
    BOOL developerExtras;
}
- (BOOL)_developerExtrasEnabled;
- (void)_setDeveloperExtrasEnabled:(BOOL)enabled;
@end

@interface WKWebViewConfiguration : NSObject {
    WKUserContentController* controller;
    WKPreferences* chosenPreferences;
}
@property(nonatomic, retain) WKUserContentController* userContentController;
@property(nonatomic, retain) WKPreferences* preferences;
@end

@interface WKNavigationAction : NSObject {
    NSURLRequest* wanted;
}
- (instancetype)initWithRequest:(NSURLRequest*)request;
@property(nonatomic, readonly) NSURLRequest* request;
@end

enum WKNavigationActionPolicy : NSInteger {
    WKNavigationActionPolicyCancel,
    WKNavigationActionPolicyAllow,
};

@protocol WKNavigationDelegate <NSObject>
@optional
- (void)webView:(WKWebView*)webView didFinishNavigation:(WKNavigation*)navigation;
- (void)webView:(WKWebView*)webView didFailNavigation:(WKNavigation*)navigation withError:(NSError*)error;
- (void)webView:(WKWebView*)webView
    didFailProvisionalNavigation:(WKNavigation*)navigation
                       withError:(NSError*)error;
- (void)webView:(WKWebView*)webView
    decidePolicyForNavigationAction:(WKNavigationAction*)action
                    decisionHandler:(void (^)(WKNavigationActionPolicy))decisionHandler;
@end

@interface WKWebView : NSView {
    WKWebViewConfiguration* viewConfiguration;
    id<WKNavigationDelegate> delegate; // not retained
    NSURL* shown;
    BOOL inspection;
}
- (instancetype)initWithFrame:(NSRect)frame configuration:(WKWebViewConfiguration*)configuration;
@property(nonatomic, readonly) WKWebViewConfiguration* configuration;
@property(nonatomic, assign) id<WKNavigationDelegate> navigationDelegate;
@property(nonatomic, readonly) NSURL* URL;
@property(nonatomic, getter=isInspectable) BOOL inspectable; // on newer systems
- (WKNavigation*)loadRequest:(NSURLRequest*)request;
- (WKNavigation*)loadHTMLString:(NSString*)html baseURL:(NSURL*)url;
- (void)evaluateJavaScript:(NSString*)script completionHandler:(void (^)(id, NSError*))handler;
@end
