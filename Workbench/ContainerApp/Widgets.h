#pragma once

#include <glibmm/ustring.h>
#include <gtkmm/dropdown.h>
#include <gtkmm/label.h>
#include <gtkmm/widget.h>

#include <vector>

namespace workbench {

// What the parts of the window have in common.

Gtk::Label& leftAligned(Gtk::Label& label);

void setClass(Gtk::Widget& widget, char const* name, bool on);

// The name that a screen reader says, for what shows none.
void setAccessibleName(Gtk::Widget& widget, char const* name);

// Texts to choose from, each cut where there is no room.
void setChoices(Gtk::DropDown& choice, std::vector<Glib::ustring> const& texts);

} // namespace workbench
