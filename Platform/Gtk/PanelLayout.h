#pragma once

#include <gtkmm/layoutmanager.h>

namespace fcp {

class GtkView;

// Gives a panel's root widget to its outermost view, all of it, and begins the view's resizing there. Belongs
// to the root widget; must not be used after the view.
class PanelLayout final : public Gtk::LayoutManager {
public:
    [[nodiscard]] static Glib::RefPtr<PanelLayout> create(GtkView& view);

protected:
    // Would like the size that the view was made with, and is content with none.
    void measure_vfunc(Gtk::Widget const& widget, Gtk::Orientation orientation, int forSize, int& minimum,
                       int& natural, int& minimumBaseline, int& naturalBaseline) const override;
    void allocate_vfunc(Gtk::Widget const& widget, int width, int height, int baseline) override;

private:
    explicit PanelLayout(GtkView& outermost);

    GtkView& view;
    int const naturalWidth;
    int const naturalHeight;
};

} // namespace fcp
