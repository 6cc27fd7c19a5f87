#pragma once

#include "Workbench/ContainerApp/WindowActions.h"
#include "Workbench/ContainerApp/WindowContent.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/dropdown.h>
#include <gtkmm/label.h>
#include <gtkmm/listbox.h>
#include <gtkmm/progressbar.h>
#include <gtkmm/scrolledwindow.h>

#include <optional>
#include <string>
#include <vector>

namespace workbench {

// The lower part of the window: starts an export, shows how far it is, where it goes and what became of the
// last ones. Main thread only.
class ExportPanel : public Gtk::Box {
public:
    explicit ExportPanel(WindowActions actions);

    void showFolder(std::string const& path);
    void showExports(std::vector<WindowContent::ExportRow> const& rows);

    // From 0 to 1 while an export runs.
    void showProgress(std::optional<double> progress);

    // As a click on the button does.
    void start();

private:
    void buildFolder();
    void buildStart();
    void buildProgress();
    void buildList();

    WindowActions actions;
    std::vector<WindowContent::ExportRow> shownExports;
    Gtk::Box folderRow;
    Gtk::Label folderTitle{"Folder"};
    Gtk::Label folder;
    Gtk::Button change{"_Change…", true};
    Gtk::Box startRow;
    Gtk::DropDown format;
    Gtk::Button exportButton{"_Export", true};
    Gtk::Box progressRow;
    Gtk::ProgressBar bar;
    Gtk::Button cancel{"C_ancel", true};
    Gtk::ScrolledWindow scroller;
    Gtk::ListBox list;
};

} // namespace workbench
