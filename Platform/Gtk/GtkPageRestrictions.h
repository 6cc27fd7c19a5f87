#pragma once

#include "Platform/Gtk/GSignal.h"

#include <webkit/webkit.h>

#include <memory>
#include <vector>

namespace fcp {

// Turns down what a page may not do to the program around it: dialogs, permissions, file choosers,
// notifications, printing, passwords and downloads. Without it the engine would open windows of its own over
// the host's, or block the page behind a dialog. Holds as long as it lives. Main thread only.
class GtkPageRestrictions final : public std::enable_shared_from_this<GtkPageRestrictions> {
public:
    explicit GtkPageRestrictions(WebKitWebView* view);

    GtkPageRestrictions(GtkPageRestrictions const&) = delete;
    GtkPageRestrictions& operator=(GtkPageRestrictions const&) = delete;

private:
    void cancelDownload(WebKitNetworkSession* emitter, WebKitDownload* download);

    // Borrowed and only compared: the network session serves other web views of the process as well.
    WebKitWebView* const restricted;
    std::vector<GSignal> connections;
};

} // namespace fcp
