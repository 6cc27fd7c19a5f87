#pragma once

#include <gtkmm/filechoosernative.h>

#include <functional>
#include <string>

namespace workbench {

// Lets a person choose a file to import. One dialog at a time. Main thread only.
class FileDialog {
public:
    explicit FileDialog(Gtk::Window& parent);

    FileDialog(FileDialog const&) = delete;
    FileDialog& operator=(FileDialog const&) = delete;

    // Calls back with the file that was chosen, if any. Nothing happens while a dialog is open.
    void open(std::function<void(std::string const& file)> chosen);

private:
    Gtk::Window& parent;
    Glib::RefPtr<Gtk::FileChooserNative> dialog; // while it is open
};

} // namespace workbench
