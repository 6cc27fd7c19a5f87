#include "Platform/Gtk/ClipLayout.h"

#include <algorithm>

namespace fcp {

void ClipLayout::allocate(GtkWidget* widget, int width, int height) {
    auto* const child = gtk_widget_get_first_child(widget);
    int neededWidth = 0;
    gtk_widget_measure(child, GTK_ORIENTATION_HORIZONTAL, -1, &neededWidth, nullptr, nullptr, nullptr);
    auto const childWidth = std::max(width, neededWidth);
    int neededHeight = 0;
    gtk_widget_measure(child, GTK_ORIENTATION_VERTICAL, childWidth, nullptr, &neededHeight, nullptr, nullptr);
    GtkAllocation const place{0, 0, childWidth, std::max(height, neededHeight)};
    gtk_widget_size_allocate(child, &place, -1);
}

} // namespace fcp
