#include "benches/Sides/BareWindow.h"

#include "benches/Sides/SideOptions.h"

#include <cstdlib>
#include <utility>

namespace fcp::bench {

namespace {

constexpr guint announcementDelay = 500; // milliseconds

// Like the panel, it wants to know when a script has failed.
void evaluated(GObject* view, GAsyncResult* result, gpointer) {
    GError* error = nullptr;
    JSCValue* value = webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, &error);
    if (error) {
        g_printerr("%s\n", error->message);
        g_error_free(error);
    }
    g_clear_object(&value);
}

WebKitWebView* newView(WebKitUserContentManager* manager) {
    auto* const settings = webkit_settings_new_with_settings(
        "hardware-acceleration-policy", WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER, "enable-fullscreen", FALSE,
        "javascript-can-open-windows-automatically", TRUE, "enable-developer-extras", TRUE, nullptr);
    auto* const view =
        g_object_new(WEBKIT_TYPE_WEB_VIEW, "settings", settings, "user-content-manager", manager, nullptr);
    g_object_unref(settings);
    return WEBKIT_WEB_VIEW(view);
}

// The panel makes a view that is never shown before the real one.
void makeAndDropView() {
    auto* const manager = webkit_user_content_manager_new();
    auto* const view = g_object_ref_sink(newView(manager));
    g_object_unref(view);
    g_object_unref(manager);
}

WebKitWebView* makeView() {
    gtk_init();
    makeAndDropView();
    return newView(webkit_user_content_manager_new());
}

void showInWindow(WebKitWebView* view) {
    auto* const window = GTK_WINDOW(gtk_window_new());
    gtk_window_set_default_size(window, 400, 700);
    gtk_window_set_child(window, GTK_WIDGET(view));
    gtk_window_present(window);
}

} // namespace

BareWindow::BareWindow(SideOptions const& options, Received onMessage)
    : onReceived(std::move(onMessage))
    , saysFinished(options.saysFinished)
    , view(makeView()) {
    auto* const manager = webkit_web_view_get_user_content_manager(view);
    g_signal_connect(manager, "script-message-received::fcpBridge", G_CALLBACK(received), this);
    webkit_user_content_manager_register_script_message_handler(manager, "fcpBridge", nullptr);
    g_signal_connect(view, "load-changed", G_CALLBACK(loadChanged), this);
    showInWindow(view);
    webkit_web_view_load_uri(view, options.url.c_str());
}

void BareWindow::received(WebKitUserContentManager*, JSCValue* message, gpointer self) {
    static_cast<BareWindow*>(self)->onReceived(message);
}

void BareWindow::loadChanged(WebKitWebView*, WebKitLoadEvent event, gpointer self) {
    if (event != WEBKIT_LOAD_FINISHED)
        return;
    if (static_cast<BareWindow*>(self)->saysFinished)
        sayFinished();
    g_timeout_add(announcementDelay, announce, self);
}

gboolean BareWindow::announce(gpointer self) {
    static_cast<BareWindow*>(self)->sendEvent("fcp:connected", "{}");
    static_cast<BareWindow*>(self)->sendEvent("fcp:sequence-changed", std::string(timelineText));
    return G_SOURCE_REMOVE;
}

void BareWindow::sendEvent(char const* event, std::string const& payload) {
    char* const base64 = g_base64_encode(reinterpret_cast<guchar const*>(payload.data()), payload.size());
    std::string script;
    script.reserve(256 + 2 * payload.size());
    script += "(function() {\n  try {\n    var payload = JSON.parse(atob('";
    script += base64;
    script += "'));\n    window.dispatchEvent(new CustomEvent('";
    script += event;
    script += "', { detail: payload }));\n  } catch(e) {\n    console.error('[Zelvix] Failed to dispatch ";
    script += event;
    script += ":', e);\n  }\n})();";
    g_free(base64);
    webkit_web_view_evaluate_javascript(view, script.data(), static_cast<gssize>(script.size()), nullptr,
                                        nullptr, nullptr, evaluated, nullptr);
}

void BareWindow::resolve(std::string const& resolveId, std::string_view value) {
    auto payload = R"({"resolveId":")" + resolveId + R"(","value":")";
    payload += value;
    payload += R"("})";
    sendEvent("fcp:resolve", payload);
}

void BareWindow::run() {
    g_main_loop_run(g_main_loop_new(nullptr, FALSE));
    std::exit(0);
}

std::string textMember(JSCValue* message, char const* name) {
    JSCValue* const member = jsc_value_object_get_property(message, name);
    char* const text = jsc_value_to_string(member);
    std::string result = text;
    g_free(text);
    g_object_unref(member);
    return result;
}

} // namespace fcp::bench
