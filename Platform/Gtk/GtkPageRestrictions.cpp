#include "Platform/Gtk/GtkPageRestrictions.h"

namespace fcp {

GtkPageRestrictions::GtkPageRestrictions(WebKitWebView* view)
    : restricted(view) {
    using Self = GtkPageRestrictions;
    connections.push_back(GSignal::connect<&Self::closeDialog>(view, "script-dialog", this));
    connections.push_back(GSignal::connect<&Self::denyPermission>(view, "permission-request", this));
    connections.push_back(GSignal::connect<&Self::cancelFileChooser>(view, "run-file-chooser", this));
    connections.push_back(GSignal::connect<&Self::dropNotification>(view, "show-notification", this));
    connections.push_back(GSignal::connect<&Self::dropPrinting>(view, "print", this));
    connections.push_back(GSignal::connect<&Self::continueWithoutPassword>(view, "authenticate", this));
    connections.push_back(GSignal::connect<&Self::cancelDownload>(webkit_web_view_get_network_session(view),
                                                                  "download-started", this));
}

gboolean GtkPageRestrictions::closeDialog(WebKitWebView*, WebKitScriptDialog* dialog) {
    // Every question is left unanswered, but a page has no say in whether the panel may leave it.
    if (webkit_script_dialog_get_dialog_type(dialog) == WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM)
        webkit_script_dialog_confirm_set_confirmed(dialog, TRUE);
    return TRUE;
}

gboolean GtkPageRestrictions::denyPermission(WebKitWebView*, WebKitPermissionRequest* request) {
    webkit_permission_request_deny(request);
    return TRUE;
}

gboolean GtkPageRestrictions::cancelFileChooser(WebKitWebView*, WebKitFileChooserRequest* request) {
    webkit_file_chooser_request_cancel(request);
    return TRUE;
}

gboolean GtkPageRestrictions::dropNotification(WebKitWebView*, WebKitNotification*) {
    return TRUE;
}

gboolean GtkPageRestrictions::dropPrinting(WebKitWebView*, WebKitPrintOperation*) {
    return TRUE;
}

gboolean GtkPageRestrictions::continueWithoutPassword(WebKitWebView*, WebKitAuthenticationRequest* request) {
    // Without a credential the server's own refusal page is shown; cancelling would fail the load.
    webkit_authentication_request_authenticate(request, nullptr);
    return TRUE;
}

void GtkPageRestrictions::cancelDownload(WebKitNetworkSession*, WebKitDownload* download) {
    if (webkit_download_get_web_view(download) == restricted)
        webkit_download_cancel(download);
}

} // namespace fcp
