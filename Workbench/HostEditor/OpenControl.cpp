#include "Workbench/HostEditor/OpenControl.h"

#include "Workbench/HostEditor/Accessible.h"

#include <glibmm/miscutils.h>
#include <gtkmm/label.h>
#include <gtkmm/window.h>

#include <filesystem>
#include <utility>

namespace workbench {

OpenControl::OpenControl() {
    add_css_class("workbench-open");
    button.set_tooltip_text("Open files (Ctrl+O)");
    button.set_focus_on_click(false);
    setAccessibleName(button, "Open files");
    button.signal_clicked().connect([this] { openDialog(); });
    recent.set_tooltip_text("Files that were opened last");
    recent.set_focus_on_click(false);
    recent.set_popover(menu);
    setAccessibleName(recent, "Recent files");
    menu.set_halign(Gtk::Align::START);
    append(button);
    append(recent);
    offerRecent({});
}

void OpenControl::offerRecent(std::vector<std::string> const& paths) {
    auto* const list = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    for (auto const& path : paths)
        addRecent(*list, path);
    menu.set_child(*list);
    recent.set_sensitive(!paths.empty());
}

void OpenControl::addRecent(Gtk::Box& list, std::string const& path) {
    auto* const label = Gtk::make_managed<Gtk::Label>(Glib::filename_display_basename(path));
    constexpr int characters = 48;
    label->set_ellipsize(Pango::EllipsizeMode::MIDDLE);
    label->set_max_width_chars(characters);
    label->set_xalign(0);
    auto* const entry = Gtk::make_managed<Gtk::Button>();
    entry->set_child(*label);
    entry->set_has_frame(false);
    entry->set_tooltip_text(Glib::filename_display_name(path));
    std::error_code error;
    entry->set_sensitive(std::filesystem::exists(path, error));
    entry->signal_clicked().connect([this, path] {
        menu.popdown();
        files.emit({path});
    });
    list.append(*entry);
}

void OpenControl::openDialog() {
    auto* const window = dynamic_cast<Gtk::Window*>(get_root());
    if (dialog || !window)
        return;
    dialog = Gtk::FileChooserNative::create("Open files", *window, Gtk::FileChooser::Action::OPEN, "Open",
                                            "Cancel");
    dialog->set_modal(true);
    dialog->set_select_multiple(true);
    dialog->signal_response().connect([this](int response) { respond(response); });
    dialog->show();
}

void OpenControl::respond(int response) {
    auto const answered = std::exchange(dialog, {});
    std::vector<Glib::RefPtr<Gio::File>> chosen;
    if (response == static_cast<int>(Gtk::ResponseType::ACCEPT)) {
        auto const list = answered->get_files();
        for (guint index = 0; index < list->get_n_items(); ++index)
            // The list's own access wraps classes alone; a file is an interface.
            chosen.push_back(Glib::wrap(G_FILE(g_list_model_get_item(list->gobj(), index))));
    }
    answered->hide();
    if (auto const paths = localPaths(chosen); !paths.empty())
        files.emit(paths);
}

std::vector<std::string> localPaths(std::vector<Glib::RefPtr<Gio::File>> const& files) {
    std::vector<std::string> paths;
    for (auto const& file : files)
        if (auto path = file ? file->get_path() : std::string{}; !path.empty())
            paths.push_back(std::move(path));
    return paths;
}

} // namespace workbench
