#pragma once

#include "Workbench/ContainerApp/ExportPanel.h"
#include "Workbench/ContainerApp/Timer.h"
#include "Workbench/ContainerApp/WindowActions.h"
#include "Workbench/ContainerApp/WindowContent.h"

#include <giomm/liststore.h>
#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/columnview.h>
#include <gtkmm/dropdown.h>
#include <gtkmm/label.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/stack.h>
#include <gtkmm/window.h>

#include <optional>
#include <string>
#include <vector>

namespace workbench {

// Prepares the toolkit; false where there is no display. Before the first window.
[[nodiscard]] bool startToolkit();

// The comments of one sequence, exports and imports of them, and the last thing that was done or went wrong.
// Main thread only.
class MainWindow : public Gtk::Window {
public:
    class CommentItem;

    explicit MainWindow(WindowActions actions);

    void showContent(WindowContent const& shown);

    // From 0 to 1 while an export runs.
    void showProgress(std::optional<double> progress) { exports.showProgress(progress); }

    // For some seconds.
    void showProblem(std::string const& sentence);
    void showNews(std::string const& sentence);

private:
    void buildHeading();
    void buildComments();
    void buildKeys();
    void showSequences(WindowContent const& shown);
    void showSentence(std::string const& sentence, bool isProblem);
    void addColumn(Glib::ustring const& title, std::string WindowContent::CommentRow::* text);
    void showComments(std::vector<WindowContent::CommentRow> const& rows);

    WindowActions actions;
    Glib::RefPtr<Gio::ListStore<CommentItem>> items;
    std::vector<WindowContent::CommentRow> shownComments;
    std::vector<WindowContent::SequenceRow> shownSequences;
    Gtk::Box content{Gtk::Orientation::VERTICAL};
    Gtk::DropDown sequence;
    bool isFilling = false; // what changes is not a person's choice
    Gtk::Button importButton{"_Import…", true};
    Gtk::Label summary;
    Gtk::Stack stack;
    Gtk::Label nothing;
    Gtk::ScrolledWindow commentsArea;
    Gtk::ColumnView comments;
    ExportPanel exports;
    Gtk::Label problem;
    Timer problemTimer;
};

} // namespace workbench
