#pragma once

#include "Platform/Gtk/Layout.h"

namespace fcp {

class GtkView;

// Gives a panel's root widget to its outermost view, all of it, and begins the view's resizing there. Must
// not be used after the view.
class PanelLayout final : public Layout {
public:
    explicit PanelLayout(GtkView& outermost);

    // The size that the view was made with.
    [[nodiscard]] int naturalSize(GtkOrientation orientation) const override;

    void allocate(GtkWidget* widget, int width, int height) override;

private:
    GtkView& view;
    int const naturalWidth;
    int const naturalHeight;
};

} // namespace fcp
