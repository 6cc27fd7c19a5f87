#include "Platform/Gtk/Panel.h"

#include "FcpExtension/ViewController.h"
#include "Platform/Gtk/PanelAdapters.h"

namespace fcp {

namespace {

constexpr char const* panelKey = "fcp-panel";

void deletePanel(gpointer panel) {
    delete static_cast<Panel*>(panel);
}

// A widget that is being destroyed must lose its children then; what is attached to it goes only later.
void dropPanel(GtkWidget* root, gpointer) {
    g_object_set_data(G_OBJECT(root), panelKey, nullptr);
}

} // namespace

GtkWidget* Panel::make(PanelAdapters& adapters) {
    auto* const root = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_widget_set_overflow(root, GTK_OVERFLOW_HIDDEN);
    auto* const panel = new Panel(root, adapters);
    g_object_set_data_full(G_OBJECT(root), panelKey, panel, deletePanel);
    g_signal_connect(root, "destroy", G_CALLBACK(dropPanel), nullptr);
    panel->viewController->loadView();
    panel->viewController->viewDidLoad();
    return root;
}

Panel::Panel(GtkWidget* root, PanelAdapters& adapters)
    : userInterface(root, adapters.stylesheet())
    , viewController(ViewController::create(adapters.platform(userInterface))) {}

Panel::~Panel() = default;

} // namespace fcp
