#include "Workbench/HostEditor/ConnectionLight.h"

#include "Workbench/HostEditor/Accessible.h"

#include <gdkmm/rgba.h>

#include <array>
#include <numbers>

namespace workbench {

namespace {

constexpr double Distance = 13; // from light to light
constexpr double Radius = 3.5;

} // namespace

ConnectionLight::ConnectionLight() {
    add_css_class("workbench-light");
    set_content_width(Width);
    constexpr int lights = 3;
    set_content_height(static_cast<int>(lights * Distance));
    setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_IMG);
    setAccessibleName(*this, "Connections");
    set_draw_func(
        [this](Cairo::RefPtr<Cairo::Context> const& context, int width, int) { draw(context, width); });
    show({});
}

void ConnectionLight::show(Connections const& connections) {
    shown = connections;
    set_tooltip_text(describe(shown));
    setAccessibleDescription(*this, summary(shown));
    queue_draw();
}

void ConnectionLight::draw(Cairo::RefPtr<Cairo::Context> const& context, int width) const {
    Gdk::RGBA const there{"#7ac74f"};
    Gdk::RGBA const away{"#9a988d"};
    std::array const lights = {shown.host, shown.page, shown.container};
    context->set_line_width(1.5);
    for (std::size_t index = 0; index < lights.size(); ++index) {
        auto const& colour = lights[index] ? there : away;
        context->set_source_rgba(colour.get_red(), colour.get_green(), colour.get_blue(), 1);
        context->arc(width / 2.0, (static_cast<double>(index) + 0.5) * Distance, Radius, 0,
                     2 * std::numbers::pi);
        if (lights[index])
            context->fill();
        else
            context->stroke();
    }
}

} // namespace workbench
