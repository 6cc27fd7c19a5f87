#include "Workbench/HostEditor/PinButton.h"

#include "Workbench/HostEditor/Accessible.h"

#include <glibmm/ustring.h>

#include <algorithm>
#include <numbers>

namespace workbench {

namespace {

constexpr std::size_t LongestText = 160;
constexpr std::size_t MostLines = 6;

std::string tooltip(PinGroup const& group, std::vector<Pin> const& pins) {
    std::string text;
    auto const lines = std::min(group.members.size(), MostLines);
    for (std::size_t line = 0; line < lines; ++line) {
        if (line > 0)
            text += '\n';
        text += pinText(pins[group.members[line]]);
    }
    if (group.members.size() > lines)
        text += "\nand " + std::to_string(group.members.size() - lines) + " more";
    return text;
}

std::string name(PinGroup const& group, std::vector<Pin> const& pins) {
    auto const first = pinText(pins[group.members.front()]);
    if (group.members.size() == 1)
        return "Comment, " + first;
    return std::to_string(group.members.size()) + " comments, " + first;
}

} // namespace

Gdk::RGBA pinColour(Pin const& pin, bool isLive) {
    if (!isLive)
        return Gdk::RGBA{"#6f6d66"};
    Gdk::RGBA colour;
    auto const isColour = pin.colour.starts_with('#') && colour.set(pin.colour);
    return isColour ? colour : Gdk::RGBA{"#f2762e"};
}

std::string pinText(Pin const& pin) {
    auto line = pin.author.empty() ? pin.text : pin.author + ": " + pin.text;
    std::ranges::replace(line, '\n', ' ');
    Glib::ustring const text = line;
    return text.size() > LongestText ? text.substr(0, LongestText).raw() + "…" : text.raw();
}

PinButton::PinButton(PinGroup const& group, std::vector<Pin> const& pins, bool isLive)
    : marked(group.frame)
    , colour(pinColour(pins[group.members.front()], isLive))
    , isHollow(std::ranges::all_of(group.members, [&](auto member) { return pins[member].isResolved; })) {
    add_css_class("workbench-pin");
    set_has_frame(false);
    set_focus_on_click(false);
    set_tooltip_text(tooltip(group, pins));
    setAccessibleName(*this, name(group, pins));
    dot.set_content_width(Reach);
    dot.set_content_height(Reach);
    dot.set_draw_func([this](auto const& context, int width, int height) { draw(context, width, height); });
    set_child(dot);
}

void PinButton::draw(Cairo::RefPtr<Cairo::Context> const& context, int width, int height) const {
    constexpr double radius = 4.5;
    context->set_source_rgba(colour.get_red(), colour.get_green(), colour.get_blue(), 1);
    context->arc(width / 2.0, height / 2.0, isHollow ? radius - 0.75 : radius, 0, 2 * std::numbers::pi);
    if (!isHollow) {
        context->fill();
        return;
    }
    context->set_line_width(1.5);
    context->stroke();
}

} // namespace workbench
