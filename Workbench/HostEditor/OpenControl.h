#pragma once

#include <giomm/file.h>
#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/filechoosernative.h>
#include <gtkmm/menubutton.h>
#include <gtkmm/popover.h>
#include <sigc++/sigc++.h>

#include <string>
#include <vector>

namespace workbench {

// The ways into the editor: a dialog for files, and the list of those that were opened last.
class OpenControl final : public Gtk::Box {
public:
    OpenControl();

    void offerRecent(std::vector<std::string> const& paths);
    void openDialog(); // one at a time

    sigc::signal<void(std::vector<std::string>)>& signalFiles() { return files; }

private:
    void respond(int response);
    void addRecent(Gtk::Box& list, std::string const& path);

    Gtk::Button button{"Open"};
    Gtk::MenuButton recent;
    Gtk::Popover menu;
    Glib::RefPtr<Gtk::FileChooserNative> dialog; // null: none is open
    sigc::signal<void(std::vector<std::string>)> files;
};

// The paths of files on this machine; the others are left out.
[[nodiscard]] std::vector<std::string> localPaths(std::vector<Glib::RefPtr<Gio::File>> const& files);

} // namespace workbench
