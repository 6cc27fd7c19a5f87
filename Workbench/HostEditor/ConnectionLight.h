#pragma once

#include "Workbench/HostEditor/Connections.h"

#include <gtkmm/drawingarea.h>

namespace workbench {

// Three lights, for host, page and container from top to bottom: full where connected, a ring where not. In
// words on hover, and for those who do not see it.
class ConnectionLight final : public Gtk::DrawingArea {
public:
    static constexpr int Width = 14;

    ConnectionLight();

    void show(Connections const& connections);

private:
    void draw(Cairo::RefPtr<Cairo::Context> const& context, int width) const;

    Connections shown;
};

} // namespace workbench
