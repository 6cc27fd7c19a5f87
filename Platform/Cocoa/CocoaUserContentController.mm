#include "Platform/Cocoa/CocoaUserContentController.h"

#include "Platform/Cocoa/Conversions.h"

#include <utility>

// What WebKit holds for a handler of ours.
@interface FcpScriptMessageHandler : NSObject <WKScriptMessageHandler> {
    std::weak_ptr<fcp::UserContentController> controller;
    std::shared_ptr<fcp::ScriptMessageHandler> handler;
}
- (instancetype)initWithController:(std::weak_ptr<fcp::UserContentController>)owner
                           handler:(std::shared_ptr<fcp::ScriptMessageHandler>)target;
@end

@implementation FcpScriptMessageHandler

- (instancetype)initWithController:(std::weak_ptr<fcp::UserContentController>)owner
                           handler:(std::shared_ptr<fcp::ScriptMessageHandler>)target {
    if ((self = [super init])) {
        controller = std::move(owner);
        handler = std::move(target);
    }
    return self;
}

- (void)userContentController:(WKUserContentController*)sender
      didReceiveScriptMessage:(WKScriptMessage*)message {
    (void)sender;
    auto const receiver = handler; // a command may end the panel, and this object with it
    auto const owner = controller.lock();
    if (!owner)
        return;
    if (auto body = fcp::messageBody([message body]))
        receiver->userContentController(*owner,
                                        {fcp::readString([message name]).value_or(""), *std::move(body)});
}

@end

namespace fcp {

void CocoaUserContentController::addScriptMessageHandler(std::shared_ptr<ScriptMessageHandler> handler,
                                                         std::string const& name) {
    auto const target = RetainPtr<FcpScriptMessageHandler*>::adopt(
        [[FcpScriptMessageHandler alloc] initWithController:weak_from_this() handler:std::move(handler)]);
    [native() addScriptMessageHandler:target.get() name:makeString(name).get()];
}

void CocoaUserContentController::removeAllScriptMessageHandlers() {
    [native() removeAllScriptMessageHandlers];
}

} // namespace fcp
