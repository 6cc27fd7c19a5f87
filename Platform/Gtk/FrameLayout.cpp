#include "Platform/Gtk/FrameLayout.h"

#include "Platform/Gtk/GtkView.h"

namespace fcp {

void FrameLayout::allocate(GtkWidget*, int, int) {
    view.allocateSubviews();
}

} // namespace fcp
