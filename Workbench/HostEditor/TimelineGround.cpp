#include "Workbench/HostEditor/TimelineGround.h"

#include "Workbench/HostEditor/PinButton.h"
#include "Workbench/HostEditor/Timecode.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace workbench {

namespace {

using Context = Cairo::RefPtr<Cairo::Context>;

constexpr double LabelRoom = 108; // pixels from one label of the ruler to the next
constexpr double LabelSize = 10; // pixels, like the one of the name below
constexpr double NameSize = 12;

void setColour(Context const& context, Gdk::RGBA const& colour, double alpha = 1) {
    context->set_source_rgba(colour.get_red(), colour.get_green(), colour.get_blue(),
                             colour.get_alpha() * alpha);
}

void roundedRectangle(Context const& context, double x, double y, double width, double height,
                      double radius) {
    using std::numbers::pi;
    context->begin_new_path();
    context->arc(x + width - radius, y + radius, radius, -pi / 2, 0);
    context->arc(x + width - radius, y + height - radius, radius, 0, pi / 2);
    context->arc(x + radius, y + height - radius, radius, pi / 2, pi);
    context->arc(x + radius, y + radius, radius, pi, 3 * pi / 2);
    context->close_path();
}

void drawText(Gtk::Widget& widget, Context const& context, std::string const& text, double size, double x,
              double y, int width) {
    auto const layout = widget.create_pango_layout(text);
    auto font = widget.get_pango_context()->get_font_description();
    font.set_absolute_size(size * Pango::SCALE);
    layout->set_font_description(font);
    layout->set_ellipsize(Pango::EllipsizeMode::END);
    layout->set_width(width * Pango::SCALE);
    context->move_to(x, y);
    layout->show_in_cairo_context(context);
}

} // namespace

TimelineGround::TimelineGround() {
    set_draw_func([this](Context const& context, int, int) { draw(context); });
}

void TimelineGround::showSequence(SequenceFacts const* shown) {
    sequence = shown ? std::optional{*shown} : std::nullopt;
    queue_draw();
}

void TimelineGround::setAxis(TimeAxis const& newAxis) {
    axis = newAxis;
    queue_draw();
}

void TimelineGround::showPins(std::vector<Pin> shown, bool areLive) {
    pins = std::move(shown);
    pinsAreLive = areLive;
    queue_draw();
}

void TimelineGround::draw(Context const& context) {
    if (!sequence)
        return;
    drawRuler(context);
    drawMarks(context);
    drawClip(context);
    drawRanges(context);
}

void TimelineGround::drawRuler(Context const& context) {
    auto const colour = get_style_context()->get_color();
    auto const step = axis.labelStep(LabelRoom);
    constexpr double tickHeight = 6;
    context->set_line_width(1);
    // Labels that are left out are stood in for by the next one that a frame carries.
    auto const last = labelOf(axis.frameUnder(get_width()), axis.rate);
    auto label = labelOf(axis.frameUnder(0), axis.rate) / step * step;
    for (; label <= last; label += step) {
        auto const frame = frameAtOrAfter(label, axis.rate);
        auto const x = std::floor(axis.positionOf(frame)) + 0.5;
        setColour(context, colour, 0.35);
        context->move_to(x, RulerHeight - tickHeight);
        context->line_to(x, RulerHeight);
        context->stroke();
        setColour(context, colour, 0.7);
        if (x + LabelRoom * 0.7 < axis.left + axis.width)
            drawText(*this, context, timecode(frame, axis.rate), LabelSize, x + 4.0, 3.0,
                     static_cast<int>(LabelRoom));
    }
}

void TimelineGround::drawMarks(Context const& context) const {
    setColour(context, Gdk::RGBA{"#8fa3c4"});
    constexpr double half = 4;
    for (auto const& mark : sequence->marks) {
        auto const x = axis.positionOf(mark.frame);
        context->rectangle(x, RulerHeight - 2, axis.positionOf(mark.frame + mark.length) - x, 2);
        context->fill();
        context->move_to(x - half, RulerHeight - 2 * half);
        context->line_to(x + half, RulerHeight - 2 * half);
        context->line_to(x, RulerHeight);
        context->close_path();
        context->fill();
    }
}

void TimelineGround::drawClip(Context const& context) {
    constexpr double radius = 4;
    // A little beyond the edges: far beyond them lines lose their thickness.
    constexpr double beyond = 16;
    auto const left = std::max(axis.left, -beyond);
    auto const right = std::min(axis.left + axis.width, get_width() + beyond);
    roundedRectangle(context, left, ClipTop, right - left, ClipHeight, radius);
    setColour(context, Gdk::RGBA{sequence->hasPicture ? "#2f3b45" : "#2f4138"});
    context->fill_preserve();
    context->set_line_width(1);
    setColour(context, Gdk::RGBA{"#45535e"});
    context->stroke();
    setColour(context, get_style_context()->get_color(), 0.85);
    constexpr double inset = 8;
    auto const nameLeft = std::max(axis.left, 0.0) + inset;
    auto const nameRoom = std::min<double>(right, get_width()) - inset - nameLeft;
    if (nameRoom > 0)
        drawText(*this, context, sequence->name, NameSize, nameLeft, ClipTop + inset,
                 static_cast<int>(nameRoom));
}

void TimelineGround::drawRanges(Context const& context) const {
    constexpr double thickness = 4;
    for (auto const& pin : pins) {
        if (!(pin.duration > 0))
            continue;
        auto const start = axis.positionOf(frameOfSeconds(pin.start, axis));
        auto const end = axis.positionOf(frameOfSeconds(pin.start + pin.duration, axis));
        setColour(context, pinColour(pin, pinsAreLive), pin.isResolved ? 0.35 : 0.6);
        context->rectangle(start, PinsTop + (PinsHeight - thickness) / 2.0, std::max(end - start, 1.0),
                           thickness);
        context->fill();
    }
}

} // namespace workbench
