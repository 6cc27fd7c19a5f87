#pragma once

#include "Ports/WebView.h"

namespace fcp {

// Makes web views of the system's.
class CocoaWebEngine final : public WebEngine {
public:
    [[nodiscard]] std::shared_ptr<UserContentController> makeUserContentController() override;
    [[nodiscard]] std::shared_ptr<WebView> makeWebView() override;

    // The controller, when one is given, comes from this engine.
    [[nodiscard]] std::shared_ptr<WebView> makeWebView(Rect const& frame,
                                                       WebViewConfiguration const& configuration) override;
};

} // namespace fcp
