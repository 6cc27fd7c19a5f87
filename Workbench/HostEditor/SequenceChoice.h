#pragma once

#include "Workbench/HostEditor/SequenceFacts.h"

#include <gtkmm/dropdown.h>
#include <gtkmm/stringlist.h>
#include <sigc++/sigc++.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace workbench {

// Offers the open sequences and shows which one is active. Long names are shortened: the window's head keeps
// its shape.
class SequenceChoice final : public Gtk::DropDown {
public:
    SequenceChoice();

    void offer(std::vector<SequenceFacts> const& sequences);
    void showActive(std::optional<std::size_t> index);

    sigc::signal<void(std::size_t)>& signalChosen() { return chosen; }

private:
    Glib::RefPtr<Gtk::StringList> names;
    bool isShowing = false; // a change is ours, not the user's
    sigc::signal<void(std::size_t)> chosen;
};

} // namespace workbench
