#pragma once

#include <gtkmm/layoutmanager.h>

namespace fcp {

class GtkView;

// Places the widgets of a view's subviews by the views' frames. It asks for no room at all, so that a panel
// can be made smaller than what is in it. Belongs to the view's widget; must not be used after the view.
class FrameLayout final : public Gtk::LayoutManager {
public:
    [[nodiscard]] static Glib::RefPtr<FrameLayout> create(GtkView const& view);

protected:
    void measure_vfunc(Gtk::Widget const& widget, Gtk::Orientation orientation, int forSize, int& minimum,
                       int& natural, int& minimumBaseline, int& naturalBaseline) const override;
    void allocate_vfunc(Gtk::Widget const& widget, int width, int height, int baseline) override;

private:
    explicit FrameLayout(GtkView const& laidOut);

    GtkView const& view;
};

} // namespace fcp
