#include "Platform/Gtk/PanelLayout.h"

#include "Platform/Gtk/GtkView.h"

#include <cmath>

namespace fcp {

Glib::RefPtr<PanelLayout> PanelLayout::create(GtkView& view) {
    return Glib::make_refptr_for_instance<PanelLayout>(new PanelLayout(view));
}

PanelLayout::PanelLayout(GtkView& outermost)
    : view(outermost)
    , naturalWidth(static_cast<int>(std::lround(outermost.frame().width)))
    , naturalHeight(static_cast<int>(std::lround(outermost.frame().height))) {}

void PanelLayout::measure_vfunc(Gtk::Widget const&, Gtk::Orientation orientation, int, int& minimum,
                                int& natural, int& minimumBaseline, int& naturalBaseline) const {
    minimum = 0;
    natural = orientation == Gtk::Orientation::HORIZONTAL ? naturalWidth : naturalHeight;
    minimumBaseline = naturalBaseline = -1;
}

void PanelLayout::allocate_vfunc(Gtk::Widget const&, int width, int height, int) {
    view.fill(width, height);
}

} // namespace fcp
