#include "Workbench/HostEditor/PanelWatch.h"

#include <string_view>
#include <utility>

namespace workbench {

namespace {

// By its name: the editor itself has no use for the web engine.
GtkWidget* webViewIn(GtkWidget* widget) {
    auto const isView = [](GType type) { return std::string_view{g_type_name(type)} == "WebKitWebView"; };
    for (auto type = G_OBJECT_TYPE(widget); type != 0; type = g_type_parent(type))
        if (isView(type))
            return widget;
    for (auto* child = gtk_widget_get_first_child(widget); child; child = gtk_widget_get_next_sibling(child))
        if (auto* const found = webViewIn(child))
            return found;
    return nullptr;
}

} // namespace

PanelWatch::~PanelWatch() {
    leave();
}

void PanelWatch::follow(GtkWidget* panel) {
    leave();
    auto* const found = webViewIn(panel);
    if (!found)
        return;
    view = G_OBJECT(found);
    g_object_add_weak_pointer(view, reinterpret_cast<void**>(&view));
    g_object_get(view, "user-content-manager", &messages, nullptr);
    g_object_unref(messages); // the view holds it
    g_object_add_weak_pointer(messages, reinterpret_cast<void**>(&messages));
    auto const heard =
        +[](GObject*, gpointer, gpointer self) { static_cast<PanelWatch*>(self)->setSpeaks(true); };
    auto const loading = +[](GObject*, int event, gpointer self) {
        constexpr int started = 0;
        if (event == started)
            static_cast<PanelWatch*>(self)->setSpeaks(false);
    };
    auto const ended =
        +[](GObject*, int, gpointer self) { static_cast<PanelWatch*>(self)->setSpeaks(false); };
    g_signal_connect(messages, "script-message-received", G_CALLBACK(heard), this);
    g_signal_connect(view, "load-changed", G_CALLBACK(loading), this);
    g_signal_connect(view, "web-process-terminated", G_CALLBACK(ended), this);
}

void PanelWatch::leave() {
    for (auto** const object : {&view, &messages}) {
        if (!*object)
            continue;
        g_signal_handlers_disconnect_by_data(*object, this);
        g_object_remove_weak_pointer(*object, reinterpret_cast<void**>(object));
        *object = nullptr;
    }
}

void PanelWatch::setSpeaks(bool pageDoes) {
    if (std::exchange(speaks, pageDoes) != pageDoes)
        changed.emit();
}

} // namespace workbench
