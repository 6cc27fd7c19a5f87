#pragma once

#include "Platform/Gtk/Layout.h"

namespace fcp {

// Shows of its one child what fits, from the top: the child gets the width that there is and at least the
// height that it needs. GTK would grow a label that needs more than its frame.
class ClipLayout final : public Layout {
public:
    void allocate(GtkWidget* widget, int width, int height) override;
};

} // namespace fcp
