#pragma once

#include "Ports/WebView.h"

#include <memory>

namespace fcp {

class Log;
class LogSystem;
class MainLoop;

// Makes web views over WebKitGTK. What an adapter has to say goes to the category "WebView", never to the
// panel's own.
class GtkWebEngine final : public WebEngine {
public:
    // `mainLoop` outlives every web view. GTK is initialised already.
    GtkWebEngine(MainLoop& mainLoop, LogSystem& logs);

    [[nodiscard]] std::shared_ptr<UserContentController> makeUserContentController() override;
    [[nodiscard]] std::shared_ptr<WebView> makeWebView() override;

    // The controller, when one is given, comes from this engine.
    [[nodiscard]] std::shared_ptr<WebView> makeWebView(Rect const& frame,
                                                       WebViewConfiguration const& configuration) override;

private:
    MainLoop& loop;
    std::shared_ptr<Log> const log;
};

} // namespace fcp
