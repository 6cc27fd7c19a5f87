#include "Platform/Gtk/ClipLayout.h"

#include <gtkmm/widget.h>

#include <algorithm>

namespace fcp {

Glib::RefPtr<ClipLayout> ClipLayout::create() {
    return Glib::make_refptr_for_instance<ClipLayout>(new ClipLayout);
}

void ClipLayout::measure_vfunc(Gtk::Widget const&, Gtk::Orientation, int, int& minimum, int& natural,
                               int& minimumBaseline, int& naturalBaseline) const {
    minimum = natural = 0;
    minimumBaseline = naturalBaseline = -1;
}

void ClipLayout::allocate_vfunc(Gtk::Widget const& widget, int width, int height, int) {
    auto* const child = gtk_widget_get_first_child(const_cast<GtkWidget*>(widget.gobj()));
    int neededWidth = 0;
    gtk_widget_measure(child, GTK_ORIENTATION_HORIZONTAL, -1, &neededWidth, nullptr, nullptr, nullptr);
    auto const childWidth = std::max(width, neededWidth);
    int neededHeight = 0;
    gtk_widget_measure(child, GTK_ORIENTATION_VERTICAL, childWidth, nullptr, &neededHeight, nullptr, nullptr);
    GtkAllocation const place{0, 0, childWidth, std::max(height, neededHeight)};
    gtk_widget_size_allocate(child, &place, -1);
}

} // namespace fcp
