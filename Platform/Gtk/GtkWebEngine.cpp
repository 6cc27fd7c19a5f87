#include "Platform/Gtk/GtkWebEngine.h"

#include "FcpExtension/FatalError.h"
#include "Platform/Gtk/GtkUserContentController.h"
#include "Platform/Gtk/GtkWebView.h"
#include "Ports/Log.h"

namespace fcp {

GtkWebEngine::GtkWebEngine(MainLoop& mainLoop, LogSystem& logs)
    : loop(mainLoop)
    , log(logs.makeLog("ai.zelvix.fcp.extension", "WebView")) {}

std::shared_ptr<UserContentController> GtkWebEngine::makeUserContentController() {
    return std::make_shared<GtkUserContentController>();
}

std::shared_ptr<WebView> GtkWebEngine::makeWebView() {
    return makeWebView(Rect{}, {});
}

std::shared_ptr<WebView> GtkWebEngine::makeWebView(Rect const& frame,
                                                   WebViewConfiguration const& configuration) {
    auto controller =
        configuration.userContentController
            ? std::dynamic_pointer_cast<GtkUserContentController>(configuration.userContentController)
            : std::make_shared<GtkUserContentController>();
    if (!controller)
        fatalError(missingReference);
    return std::make_shared<GtkWebView>(loop, log, frame, configuration.preferences, std::move(controller));
}

} // namespace fcp
