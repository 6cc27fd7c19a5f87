#include "Workbench/HostEditor/PlayheadLine.h"

#include <gtkmm/snapshot.h>

#include <cmath>

namespace workbench {

PlayheadLine::PlayheadLine() {
    add_css_class("workbench-playhead");
    set_can_target(false);
}

void PlayheadLine::showAt(std::optional<double> place) {
    if (place == position)
        return;
    position = place;
    queue_draw();
}

void PlayheadLine::snapshot_vfunc(Glib::RefPtr<Gtk::Snapshot> const& snapshot) {
    if (!position)
        return;
    constexpr float headWidth = 9;
    constexpr float headHeight = 7;
    constexpr float lineWidth = 1;
    auto const colour = get_style_context()->get_color();
    auto const x = static_cast<float>(std::lround(*position));
    graphene_rect_t line;
    graphene_rect_init(&line, x, 0, lineWidth, static_cast<float>(get_height()));
    gtk_snapshot_append_color(snapshot->gobj(), colour.gobj(), &line);
    graphene_rect_t head;
    graphene_rect_init(&head, x - (headWidth - lineWidth) / 2, 0, headWidth, headHeight);
    gtk_snapshot_append_color(snapshot->gobj(), colour.gobj(), &head);
}

} // namespace workbench
