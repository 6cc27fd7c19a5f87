#pragma once

#include <gtkmm/widget.h>

#include <optional>

namespace workbench {

// The playhead, drawn above the timeline. Apart from it, so that only this line is drawn anew for each frame.
class PlayheadLine final : public Gtk::Widget {
public:
    PlayheadLine();

    void showAt(std::optional<double> place); // pixels from the left; none: nowhere

protected:
    void snapshot_vfunc(Glib::RefPtr<Gtk::Snapshot> const& snapshot) override;

private:
    std::optional<double> position;
};

} // namespace workbench
