#include "Workbench/HostEditor/Glyph.h"

#include <gtkmm/stylecontext.h>

#include <numbers>
#include <utility>

namespace workbench {

namespace {

using Context = Cairo::RefPtr<Cairo::Context>;

constexpr int Size = 16; // pixels; the shapes below lie on this grid

void triangle(Context const& context, double left, double right) {
    context->move_to(left, 3);
    context->line_to(right, 8);
    context->line_to(left, 13);
    context->close_path();
    context->fill();
}

void bar(Context const& context, double left, double width) {
    context->rectangle(left, 3, width, 10);
    context->fill();
}

void chevron(Context const& context, double back, double tip) {
    context->set_line_width(2);
    context->move_to(back, 3.5);
    context->line_to(tip, 8);
    context->line_to(back, 12.5);
    context->stroke();
}

void dot(Context const& context, double middle) {
    constexpr double radius = 3;
    context->arc(middle, 8, radius, 0, 2 * std::numbers::pi);
    context->fill();
}

void stroke(Context const& context, double left, double top, double right, double bottom) {
    context->set_line_width(2);
    context->move_to(left, top);
    context->line_to(right, bottom);
    context->stroke();
}

// What the signs for the scale share is a line from left to right.
void drawScaleSign(Context const& context, Glyph::Sign sign) {
    stroke(context, 3, 8, 13, 8);
    if (sign == Glyph::Sign::More)
        stroke(context, 8, 3, 8, 13);
    if (sign == Glyph::Sign::All) {
        stroke(context, 2, 4, 2, 12);
        stroke(context, 14, 4, 14, 12);
    }
}

void drawSign(Context const& context, Glyph::Sign sign) {
    switch (sign) {
    case Glyph::Sign::Play:
        triangle(context, 4, 13);
        break;
    case Glyph::Sign::Pause:
        bar(context, 4, 3);
        bar(context, 9, 3);
        break;
    case Glyph::Sign::Previous:
        chevron(context, 10, 5.5);
        break;
    case Glyph::Sign::Next:
        chevron(context, 6, 10.5);
        break;
    case Glyph::Sign::First:
        bar(context, 3, 2);
        triangle(context, 13, 6);
        break;
    case Glyph::Sign::Last:
        triangle(context, 3, 10);
        bar(context, 11, 2);
        break;
    case Glyph::Sign::PreviousPin:
        chevron(context, 6.5, 2);
        dot(context, 11.5);
        break;
    case Glyph::Sign::NextPin:
        dot(context, 4.5);
        chevron(context, 9.5, 14);
        break;
    case Glyph::Sign::Less:
    case Glyph::Sign::More:
    case Glyph::Sign::All:
        drawScaleSign(context, sign);
        break;
    }
}

} // namespace

Glyph::Glyph(Sign first)
    : sign(first) {
    set_content_width(Size);
    set_content_height(Size);
    set_halign(Gtk::Align::CENTER);
    set_valign(Gtk::Align::CENTER);
    set_draw_func([this](Context const& context, int, int) { draw(context); });
}

void Glyph::setSign(Sign next) {
    if (std::exchange(sign, next) != next)
        queue_draw();
}

void Glyph::draw(Context const& context) const {
    auto const colour = get_style_context()->get_color();
    context->set_source_rgba(colour.get_red(), colour.get_green(), colour.get_blue(), colour.get_alpha());
    drawSign(context, sign);
}

} // namespace workbench
