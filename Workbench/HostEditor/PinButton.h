#pragma once

#include "Workbench/HostEditor/Pin.h"
#include "Workbench/HostEditor/TimeAxis.h"

#include <gdkmm/rgba.h>
#include <gtkmm/button.h>
#include <gtkmm/drawingarea.h>

#include <cstdint>
#include <string>
#include <vector>

namespace workbench {

// One pin, or several that lie together: a dot in the comment's colour, hollow when all of them are resolved.
class PinButton final : public Gtk::Button {
public:
    static constexpr int Reach = 12; // pixels in which it can be hit

    PinButton(PinGroup const& group, std::vector<Pin> const& pins, bool isLive);

    [[nodiscard]] std::int64_t frame() const { return marked; }

private:
    void draw(Cairo::RefPtr<Cairo::Context> const& context, int width, int height) const;

    std::int64_t marked; // frame
    Gtk::DrawingArea dot;
    Gdk::RGBA colour;
    bool isHollow = true;
};

// The colour that a comment asks for, grey while its container is away, the house's own when it asks for
// none.
[[nodiscard]] Gdk::RGBA pinColour(Pin const& pin, bool isLive);

// "Ana: Logo too small"; shortened, and without the colon where nobody is named.
[[nodiscard]] std::string pinText(Pin const& pin);

} // namespace workbench
