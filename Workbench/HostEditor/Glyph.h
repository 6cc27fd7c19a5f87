#pragma once

#include <gtkmm/drawingarea.h>

namespace workbench {

// The signs on the transport's buttons, drawn here: they look the same with every icon theme, and with none.
class Glyph final : public Gtk::DrawingArea {
public:
    enum class Sign { Play, Pause, Previous, Next, First, Last, PreviousPin, NextPin, Less, More, All };

    explicit Glyph(Sign first);

    void setSign(Sign next);

private:
    void draw(Cairo::RefPtr<Cairo::Context> const& context) const;

    Sign sign;
};

} // namespace workbench
