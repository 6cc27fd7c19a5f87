#pragma once

#include <gtkmm/layoutmanager.h>

namespace fcp {

// Shows of its one child what fits, from the top: the child gets the width that there is and at least the
// height that it needs. GTK would grow a label that needs more than its frame.
class ClipLayout final : public Gtk::LayoutManager {
public:
    [[nodiscard]] static Glib::RefPtr<ClipLayout> create();

protected:
    void measure_vfunc(Gtk::Widget const& widget, Gtk::Orientation orientation, int forSize, int& minimum,
                       int& natural, int& minimumBaseline, int& naturalBaseline) const override;
    void allocate_vfunc(Gtk::Widget const& widget, int width, int height, int baseline) override;

private:
    ClipLayout() = default;
};

} // namespace fcp
