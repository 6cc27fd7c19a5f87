#pragma once

#include "Platform/Cocoa/RetainPtr.h"
#include "Ports/WebView.h"

#import <WebKit/WebKit.h>

namespace fcp {

// Message handlers over WebKit's content controller, which retains them. A name that is taken already is a
// programming error: the system raises. Messages are decoded and delivered inside its own callback.
class CocoaUserContentController final : public UserContentController,
                                         public std::enable_shared_from_this<CocoaUserContentController> {
public:
    void addScriptMessageHandler(std::shared_ptr<ScriptMessageHandler> handler,
                                 std::string const& name) override;
    void removeAllScriptMessageHandlers() override;

    // Borrowed; for the configuration of a web view.
    [[nodiscard]] WKUserContentController* native() const { return controller.get(); }

private:
    RetainPtr<WKUserContentController*> const controller =
        RetainPtr<WKUserContentController*>::adopt([[WKUserContentController alloc] init]);
};

} // namespace fcp
