#include "Platform/Gtk/FrameLayout.h"

#include "Platform/Gtk/GtkView.h"

namespace fcp {

Glib::RefPtr<FrameLayout> FrameLayout::create(GtkView const& view) {
    return Glib::make_refptr_for_instance<FrameLayout>(new FrameLayout(view));
}

FrameLayout::FrameLayout(GtkView const& laidOut)
    : view(laidOut) {}

void FrameLayout::measure_vfunc(Gtk::Widget const&, Gtk::Orientation, int, int& minimum, int& natural,
                                int& minimumBaseline, int& naturalBaseline) const {
    minimum = natural = 0;
    minimumBaseline = naturalBaseline = -1;
}

void FrameLayout::allocate_vfunc(Gtk::Widget const&, int, int, int) {
    view.allocateSubviews();
}

} // namespace fcp
