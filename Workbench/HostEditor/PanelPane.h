#pragma once

#include <gtkmm/box.h>

#include <string>

namespace workbench {

// The place of the panel at the window's right side. It holds the panel, or says why there is none.
class PanelPane final : public Gtk::Box {
public:
    static constexpr int Width = 400; // to begin with
    static constexpr int LeastWidth = 240; // of what the user may drag it to

    PanelPane();

    void hold(GtkWidget* panel); // takes a floating reference
    void say(std::string const& heading, std::string const& detail);
};

} // namespace workbench
