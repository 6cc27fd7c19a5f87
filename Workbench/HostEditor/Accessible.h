#pragma once

#include <gtkmm/widget.h>

#include <string>

namespace workbench {

// The name by which assistive technology, and a test that drives the window from outside, finds a widget.
void setAccessibleName(Gtk::Widget& widget, std::string const& name);

// What there is to say beyond the name.
void setAccessibleDescription(Gtk::Widget& widget, std::string const& text);

// A value in words, such as a timecode, for a widget that shows one.
void setAccessibleValue(Gtk::Widget& widget, double value, double last, std::string const& words);

// What kind of thing a drawn widget is. Before it is shown for the first time.
void setAccessibleRole(Gtk::Widget& widget, GtkAccessibleRole role);

} // namespace workbench
