#include "Workbench/ContainerApp/FileDialog.h"

#include <giomm/file.h>

#include <utility>

namespace workbench {

namespace {

void addFilter(Gtk::FileChooserNative& dialog, char const* name,
               std::initializer_list<char const*> patterns) {
    auto const filter = Gtk::FileFilter::create();
    filter->set_name(name);
    for (auto const* pattern : patterns)
        filter->add_pattern(pattern);
    dialog.add_filter(filter);
}

} // namespace

FileDialog::FileDialog(Gtk::Window& theParent)
    : parent{theParent} {}

void FileDialog::open(std::function<void(std::string const& file)> chosen) {
    if (dialog)
        return;
    dialog = Gtk::FileChooserNative::create("Import comments", parent, Gtk::FileChooser::Action::OPEN,
                                            "Import", "Cancel");
    dialog->set_modal(true);
    addFilter(*dialog.get(), "Tables and guides", {"*.csv", "*.tsv", "*.txt", "*.json"});
    addFilter(*dialog.get(), "All files", {"*"});
    dialog->signal_response().connect([this, chosen = std::move(chosen)](int response) {
        auto const ended = std::exchange(dialog, {});
        auto const file = ended->get_file();
        ended->hide();
        if (response == static_cast<int>(Gtk::ResponseType::ACCEPT) && file)
            chosen(file->get_path());
    });
    dialog->show();
}

} // namespace workbench
