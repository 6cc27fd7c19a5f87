#include "Platform/Gtk/Layout.h"

namespace fcp {

namespace {

constexpr char const* layoutKey = "fcp-layout";

Layout& layoutOf(GtkWidget* widget) {
    return *static_cast<Layout*>(g_object_get_data(G_OBJECT(widget), layoutKey));
}

void measure(GtkWidget* widget, GtkOrientation orientation, int, int* minimum, int* natural,
             int* minimumBaseline, int* naturalBaseline) {
    *minimum = 0;
    *natural = layoutOf(widget).naturalSize(orientation);
    *minimumBaseline = *naturalBaseline = -1;
}

void allocate(GtkWidget* widget, int width, int height, int) {
    layoutOf(widget).allocate(widget, width, height);
}

void destroy(gpointer layout) {
    std::unique_ptr<Layout>(static_cast<Layout*>(layout));
}

} // namespace

void Layout::install(GtkWidget* widget, std::unique_ptr<Layout> layout) {
    g_object_set_data_full(G_OBJECT(widget), layoutKey, layout.release(), destroy);
    gtk_widget_set_layout_manager(widget, gtk_custom_layout_new(nullptr, measure, fcp::allocate));
}

} // namespace fcp
