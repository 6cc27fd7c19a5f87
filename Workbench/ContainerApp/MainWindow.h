#pragma once

#include "Workbench/ContainerApp/Timer.h"
#include "Workbench/ContainerApp/WindowContent.h"

#include <giomm/liststore.h>
#include <gtkmm/box.h>
#include <gtkmm/columnview.h>
#include <gtkmm/label.h>
#include <gtkmm/listbox.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/stack.h>
#include <gtkmm/window.h>

#include <functional>
#include <string>
#include <vector>

namespace workbench {

// Prepares the toolkit; false where there is no display. Before the first window.
[[nodiscard]] bool startToolkit();

// The comments of the active sequence, the newest exports and the last thing that went wrong. Main thread
// only.
class MainWindow : public Gtk::Window {
public:
    class CommentItem;

    // `closed` runs when the person closes the window.
    explicit MainWindow(std::function<void()> closed);

    void showContent(WindowContent const& shown);
    // For some seconds.
    void showProblem(std::string const& sentence);

private:
    void buildHeading();
    void buildComments();
    void buildExports();
    void addColumn(Glib::ustring const& title, std::string WindowContent::CommentRow::* text, int width);
    void showComments(std::vector<WindowContent::CommentRow> const& rows);
    void showExports(std::vector<WindowContent::ExportRow> const& rows);

    Glib::RefPtr<Gio::ListStore<CommentItem>> items;
    std::vector<WindowContent::CommentRow> shownComments;
    std::vector<WindowContent::ExportRow> shownExports;
    Gtk::Box content{Gtk::Orientation::VERTICAL};
    Gtk::Label sequence;
    Gtk::Label summary;
    Gtk::Stack stack;
    Gtk::Label nothing;
    Gtk::ScrolledWindow commentsArea;
    Gtk::ColumnView comments;
    Gtk::Box exportsArea{Gtk::Orientation::VERTICAL};
    Gtk::Label exportsTitle;
    Gtk::ScrolledWindow exportsScroller;
    Gtk::ListBox exports;
    Gtk::Label problem;
    Timer problemTimer;
};

} // namespace workbench
