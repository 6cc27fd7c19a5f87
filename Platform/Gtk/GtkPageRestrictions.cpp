#include "Platform/Gtk/GtkPageRestrictions.h"

namespace fcp {

namespace {

gboolean closeDialog(WebKitWebView*, WebKitScriptDialog* dialog, gpointer) {
    // Every question is left unanswered, but a page has no say in whether the panel may leave it.
    if (webkit_script_dialog_get_dialog_type(dialog) == WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM)
        webkit_script_dialog_confirm_set_confirmed(dialog, TRUE);
    return TRUE;
}

gboolean denyPermission(WebKitWebView*, WebKitPermissionRequest* request, gpointer) {
    webkit_permission_request_deny(request);
    return TRUE;
}

gboolean cancelFileChooser(WebKitWebView*, WebKitFileChooserRequest* request, gpointer) {
    webkit_file_chooser_request_cancel(request);
    return TRUE;
}

gboolean dropNotification(WebKitWebView*, WebKitNotification*, gpointer) {
    return TRUE;
}

gboolean dropPrinting(WebKitWebView*, WebKitPrintOperation*, gpointer) {
    return TRUE;
}

gboolean continueWithoutPassword(WebKitWebView*, WebKitAuthenticationRequest* request, gpointer) {
    // Without a credential the server's own refusal page is shown; cancelling would fail the load.
    webkit_authentication_request_authenticate(request, nullptr);
    return TRUE;
}

} // namespace

GtkPageRestrictions::GtkPageRestrictions(WebKitWebView* view)
    : restricted(view) {
    connections.push_back(GSignal::connect(view, "script-dialog", closeDialog));
    connections.push_back(GSignal::connect(view, "permission-request", denyPermission));
    connections.push_back(GSignal::connect(view, "run-file-chooser", cancelFileChooser));
    connections.push_back(GSignal::connect(view, "show-notification", dropNotification));
    connections.push_back(GSignal::connect(view, "print", dropPrinting));
    connections.push_back(GSignal::connect(view, "authenticate", continueWithoutPassword));
    connections.push_back(GSignal::connect<&GtkPageRestrictions::cancelDownload>(
        webkit_web_view_get_network_session(view), "download-started", this));
}

void GtkPageRestrictions::cancelDownload(WebKitNetworkSession*, WebKitDownload* download) {
    if (webkit_download_get_web_view(download) == restricted)
        webkit_download_cancel(download);
}

} // namespace fcp
