#pragma once

#include "Platform/Gtk/Layout.h"

namespace fcp {

class GtkView;

// Places the widgets of a view's subviews by the views' frames. Must not be used after the view.
class FrameLayout final : public Layout {
public:
    explicit FrameLayout(GtkView const& laidOut)
        : view(laidOut) {}

    void allocate(GtkWidget* widget, int width, int height) override;

private:
    GtkView const& view;
};

} // namespace fcp
