#include "Platform/Gtk/PanelLayout.h"

#include "Platform/Gtk/GtkView.h"

#include <cmath>

namespace fcp {

PanelLayout::PanelLayout(GtkView& outermost)
    : view(outermost)
    , naturalWidth(static_cast<int>(std::lround(outermost.frame().width)))
    , naturalHeight(static_cast<int>(std::lround(outermost.frame().height))) {}

int PanelLayout::naturalSize(GtkOrientation orientation) const {
    return orientation == GTK_ORIENTATION_HORIZONTAL ? naturalWidth : naturalHeight;
}

void PanelLayout::allocate(GtkWidget*, int width, int height) {
    view.fill(width, height);
}

} // namespace fcp
