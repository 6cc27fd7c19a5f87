#pragma once

#include <gtkmm/box.h>
#include <gtkmm/scrolledwindow.h>

#include <string>

namespace workbench {

// What went wrong, one line each, until the user has read it. Takes no room while there is nothing.
class NoticeList final : public Gtk::Box {
public:
    NoticeList();

    void add(std::string const& line);
    void clear();

private:
    Gtk::ScrolledWindow scroller;
    Gtk::Box lines{Gtk::Orientation::VERTICAL};
};

} // namespace workbench
