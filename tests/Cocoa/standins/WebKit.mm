#include "Cocoa/NativePage.h"

#include "Platform/Cocoa/CocoaView.h"
#include "Platform/Cocoa/Conversions.h"

#import <WebKit/WebKit.h>

#include <Block.h>

#include <deque>
#include <map>
#include <utility>

// An engine without pages: it notes what it is told, and does what a page or a server would when a test says
// so.

using fcp::RetainPtr;
using fcp::test::Journal;

namespace {

Journal* journal = nullptr;

void note(std::string line) {
    if (journal)
        journal->note(std::move(line));
}

using ScriptEnd = void (^)(id, NSError*);

// What C++ has to say of one web view.
struct Record {
    int number = 0;
    std::string name;
    std::vector<std::string> scripts;
    std::deque<ScriptEnd> running; // copies
    std::vector<fcp::test::Load> loads;
};

std::map<id, Record>& records() {
    static auto* const all = new std::map<id, Record>;
    return *all;
}

int viewsMade = 0;
bool knowsInspection = true;

// What a property keeps in the place of what it kept.
template <typename Pointer>
Pointer exchanged(Pointer kept, Pointer next) {
    [next retain];
    [kept release];
    return next;
}

std::string text(NSString* string) {
    return fcp::readString(string).value_or("nil");
}

} // namespace

@implementation WKScriptMessage

- (instancetype)initWithBody:(id)body name:(NSString*)name {
    if ((self = [super init])) {
        messageBody = [body retain];
        handlerName = [name copy];
    }
    return self;
}

- (void)dealloc {
    [messageBody release];
    [handlerName release];
    [super dealloc];
}

- (id)body {
    return messageBody;
}

- (NSString*)name {
    return handlerName;
}

@end

@implementation WKUserContentController

- (instancetype)init {
    if ((self = [super init]))
        handlers = [[NSMutableDictionary alloc] init];
    return self;
}

- (void)dealloc {
    [handlers release];
    [super dealloc];
}

- (void)addScriptMessageHandler:(id<WKScriptMessageHandler>)handler name:(NSString*)name {
    note("add handler " + text(name));
    if ([handlers objectForKey:name])
        [NSException
             raise:NSInvalidArgumentException
            format:@"Attempt to add script message handler with name '%@' when one already exists.", name];
    [handlers setObject:handler forKey:name];
}

- (void)removeAllScriptMessageHandlers {
    note("remove all handlers");
    [handlers removeAllObjects];
}

- (bool)standinPost:(id)body name:(NSString*)name {
    id<WKScriptMessageHandler> const handler = [handlers objectForKey:name];
    auto const message = RetainPtr<WKScriptMessage*>::adopt([[WKScriptMessage alloc] initWithBody:body
                                                                                             name:name]);
    [handler userContentController:self didReceiveScriptMessage:message.get()];
    return handler != nil;
}

- (NSUInteger)standinHandlers {
    return [handlers count];
}

@end

@implementation WKPreferences

- (BOOL)_developerExtrasEnabled {
    return developerExtras;
}

- (void)_setDeveloperExtrasEnabled:(BOOL)enabled {
    developerExtras = enabled;
}

@end

@implementation WKWebViewConfiguration

- (instancetype)init {
    if ((self = [super init])) {
        controller = [[WKUserContentController alloc] init];
        chosenPreferences = [[WKPreferences alloc] init];
    }
    return self;
}

- (void)dealloc {
    [controller release];
    [chosenPreferences release];
    [super dealloc];
}

- (WKUserContentController*)userContentController {
    return controller;
}

- (void)setUserContentController:(WKUserContentController*)newController {
    controller = exchanged(controller, newController);
}

- (WKPreferences*)preferences {
    return chosenPreferences;
}

- (void)setPreferences:(WKPreferences*)preferences {
    chosenPreferences = exchanged(chosenPreferences, preferences);
}

@end

@implementation WKNavigationAction

- (instancetype)initWithRequest:(NSURLRequest*)request {
    if ((self = [super init]))
        wanted = [request retain];
    return self;
}

- (void)dealloc {
    [wanted release];
    [super dealloc];
}

- (NSURLRequest*)request {
    return wanted;
}

@end

@implementation WKWebView

- (instancetype)initWithFrame:(NSRect)frame configuration:(WKWebViewConfiguration*)configuration {
    if ((self = [super initWithFrame:frame])) {
        viewConfiguration = [configuration retain];
        records()[self].number = ++viewsMade;
        records()[self].name = "web view " + std::to_string(viewsMade);
        note("make " + records()[self].name);
    }
    return self;
}

- (instancetype)initWithFrame:(NSRect)frame {
    auto const defaults = RetainPtr<WKWebViewConfiguration*>::adopt([[WKWebViewConfiguration alloc] init]);
    return [self initWithFrame:frame configuration:defaults.get()];
}

- (void)dealloc {
    note(records()[self].name + " destroyed");
    for (auto const end : records()[self].running)
        Block_release(end);
    records().erase(self);
    [viewConfiguration release];
    [shown release];
    [super dealloc];
}

- (WKWebViewConfiguration*)configuration {
    return viewConfiguration;
}

- (id<WKNavigationDelegate>)navigationDelegate {
    return delegate;
}

- (void)setNavigationDelegate:(id<WKNavigationDelegate>)newDelegate {
    if (newDelegate)
        note(records()[self].name + " setNavigationDelegate");
    delegate = newDelegate;
}

- (NSURL*)URL {
    return shown;
}

- (BOOL)isInspectable {
    return inspection;
}

- (void)setInspectable:(BOOL)inspectable {
    note(records()[self].name + " setInspectable");
    inspection = inspectable;
}

- (WKNavigation*)loadRequest:(NSURLRequest*)request {
    auto const address = text([[request URL] absoluteString]);
    note(records()[self].name + " load " + address);
    records()[self].loads.push_back({address, "", [request timeoutInterval],
                                     [request cachePolicy] == NSURLRequestUseProtocolCachePolicy});
    shown = exchanged(shown, [request URL]);
    return nil;
}

- (WKNavigation*)loadHTMLString:(NSString*)html baseURL:(NSURL*)url {
    note(records()[self].name + (url ? " load HTML under " + text([url absoluteString]) : " load HTML"));
    records()[self].loads.push_back({"", text(html), 0, false});
    shown = exchanged(shown, [NSURL URLWithString:@"about:blank"]);
    return nil;
}

- (void)evaluateJavaScript:(NSString*)script completionHandler:(ScriptEnd)handler {
    records()[self].scripts.push_back(text(script));
    records()[self].running.push_back(Block_copy(handler));
}

// A page that is white.
- (void)drawRect:(NSRect)area {
    [[NSColor whiteColor] set];
    NSRectFill(area);
}

@end

bool standinIsMacOS13_3() {
    return knowsInspection;
}

namespace fcp::test {

namespace {

WKWebView* nativeOf(void* view) {
    return static_cast<WKWebView*>(view);
}

// With null objects, as a page's message has them.
id makeBody(Json const& value) {
    if (value.is_null())
        return [NSNull null];
    if (value.is_object()) {
        auto* const members = [NSMutableDictionary dictionary];
        for (auto const& [name, member] : value.items())
            [members setObject:makeBody(member) forKey:makeString(name).get()];
        return members;
    }
    if (value.is_array()) {
        auto* const elements = [NSMutableArray array];
        for (auto const& element : value)
            [elements addObject:makeBody(element)];
        return elements;
    }
    return [[[makeUserInfo({{"value", value}}).get() objectForKey:@"value"] retain] autorelease];
}

NSError* makeError(NavigationError const& error) {
    return
        [NSError errorWithDomain:makeString(error.domain).get()
                            code:error.code
                        userInfo:@{NSLocalizedDescriptionKey : makeString(error.localizedDescription).get()}];
}

} // namespace

NativePage::NativePage(WebView& shown)
    : native(std::static_pointer_cast<CocoaView>(shown.view())->native()) {}

NativePage NativePage::latest() {
    id latest = nil;
    for (auto const& [view, record] : records()) {
        if (!latest || records()[latest].number < record.number)
            latest = view;
    }
    return NativePage(latest);
}

bool NativePage::post(Json const& body, std::string const& name) const {
    @autoreleasepool {
        return [[[nativeOf(native) configuration] userContentController] standinPost:makeBody(body)
                                                                                name:makeString(name).get()];
    }
}

void NativePage::finish() const {
    [[nativeOf(native) navigationDelegate] webView:nativeOf(native) didFinishNavigation:nil];
}

void NativePage::fail(NavigationError const& error) const {
    [[nativeOf(native) navigationDelegate] webView:nativeOf(native)
                                 didFailNavigation:nil
                                         withError:makeError(error)];
}

void NativePage::failProvisionally(NavigationError const& error) const {
    [[nativeOf(native) navigationDelegate] webView:nativeOf(native)
                      didFailProvisionalNavigation:nil
                                         withError:makeError(error)];
}

std::vector<bool> NativePage::decide(std::optional<std::string> const& address) const {
    auto* const request = address
                              ? [NSURLRequest requestWithURL:[NSURL URLWithString:makeString(*address).get()]]
                              : [[[NSURLRequest alloc] init] autorelease];
    auto const action =
        RetainPtr<WKNavigationAction*>::adopt([[WKNavigationAction alloc] initWithRequest:request]);
    std::vector<bool> answers;
    auto* const heard = &answers;
    [[nativeOf(native) navigationDelegate] webView:nativeOf(native)
                   decidePolicyForNavigationAction:action.get()
                                   decisionHandler:^(WKNavigationActionPolicy policy) {
                                     heard->push_back(policy == WKNavigationActionPolicyAllow);
                                   }];
    return answers;
}

std::vector<Load> NativePage::loads() const {
    return records()[nativeOf(native)].loads;
}

std::vector<std::string> NativePage::scripts() const {
    return records()[nativeOf(native)].scripts;
}

void NativePage::endScripts(std::optional<std::string> const& error) const {
    NSError* const failure = error ? makeError({"WKErrorDomain", 4, *error}) : nil;
    for (auto const end : std::exchange(records()[nativeOf(native)].running, {})) {
        end(nil, failure);
        Block_release(end);
    }
}

bool NativePage::isInspectable() const {
    return [nativeOf(native) isInspectable];
}

bool NativePage::hasDeveloperExtras() const {
    return [[[nativeOf(native) configuration] preferences] _developerExtrasEnabled];
}

bool NativePage::hasDelegate() const {
    return [nativeOf(native) navigationDelegate] != nil;
}

std::size_t NativePage::handlers() const {
    return [[[nativeOf(native) configuration] userContentController] standinHandlers];
}

Rect NativePage::frame() const {
    NSRect const frame = [nativeOf(native) frame];
    return {frame.origin.x, frame.origin.y, frame.size.width, frame.size.height};
}

unsigned NativePage::mask() const {
    return static_cast<unsigned>([nativeOf(native) autoresizingMask]);
}

void noteNativePages(Journal* pagesJournal) {
    journal = pagesJournal;
    viewsMade = 0;
}

std::size_t nativePages() {
    return records().size();
}

void setKnowsInspection(bool knows) {
    knowsInspection = knows;
}

} // namespace fcp::test
