#include "Workbench/ContainerApp/FolderDialog.h"

#include <giomm/file.h>

#include <utility>

namespace workbench {

namespace {

// The bus carries text only: a folder with another name could not be told to the page.
std::optional<std::string> pathOf(Glib::RefPtr<Gio::File> const& folder) {
    auto path = folder ? folder->get_path() : std::string{};
    if (path.empty() || !Glib::ustring{path}.validate())
        return {};
    return path;
}

} // namespace

FolderDialog::FolderDialog(Gtk::Window& theParent)
    : parent{theParent} {}

void FolderDialog::open(std::string const& folder, Chosen theChosen) {
    chosen = std::move(theChosen);
    dialog = Gtk::FileChooserNative::create("Choose the folder for exports", parent,
                                            Gtk::FileChooser::Action::SELECT_FOLDER, "Choose", "Cancel");
    dialog->set_modal(true);
    try {
        dialog->set_current_folder(Gio::File::create_for_path(folder));
    } catch (Glib::Error const&) {
        // The dialog then opens where it likes.
    }
    dialog->signal_response().connect([this](int response) { respond(response); });
    dialog->show();
}

void FolderDialog::respond(int response) {
    auto const folder = response == static_cast<int>(Gtk::ResponseType::ACCEPT)
                            ? pathOf(dialog->get_file())
                            : std::optional<std::string>{};
    dialog->hide();
    std::exchange(chosen, {})(folder);
}

} // namespace workbench
