#pragma once

#include <gtkmm/filechoosernative.h>
#include <gtkmm/window.h>

#include <functional>
#include <optional>
#include <string>

namespace workbench {

// The desktop's own dialog for choosing a folder. Main thread only.
class FolderDialog {
public:
    using Chosen = std::function<void(std::optional<std::string> const& folder)>;

    explicit FolderDialog(Gtk::Window& parent);

    // Opens in `folder`, if it is there. Calls back once; one dialog at a time.
    void open(std::string const& folder, Chosen chosen);

private:
    void respond(int response);

    Gtk::Window& parent;
    Glib::RefPtr<Gtk::FileChooserNative> dialog;
    Chosen chosen;
};

} // namespace workbench
