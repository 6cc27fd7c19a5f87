#include "Workbench/ContainerApp/MainWindow.h"

#include <gtk/gtk.h>
#include <gtkmm/columnviewcolumn.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/init.h>
#include <gtkmm/noselection.h>
#include <gtkmm/settings.h>
#include <gtkmm/signallistitemfactory.h>
#include <gtkmm/stylecontext.h>

#include <algorithm>
#include <clocale>
#include <iterator>

namespace workbench {

namespace {

// The panel's own colours, so that the two windows look like one thing.
constexpr char const* styleSheet = R"(
window.container { background-color: rgb(23, 23, 20); color: rgb(232, 230, 224); }
.container .sequence { font-size: 17px; font-weight: 600; }
.container .quiet { color: rgb(150, 147, 138); }
.container columnview, .container columnview > listview, .container list, .container row {
    background-color: transparent; color: rgb(232, 230, 224); }
.container columnview > header > button {
    background: none; box-shadow: none; border: none; border-bottom: 1px solid rgb(48, 48, 43);
    padding: 6px 16px; font-size: 11px; font-weight: 600; color: rgb(150, 147, 138); }
.container columnview > listview > row { padding: 0; border-bottom: 1px solid rgb(34, 34, 30); }
.container columnview > listview > row > cell { padding: 9px 16px; border: none; }
.container columnview > listview > row:hover { background-color: rgb(31, 31, 28); }
.container .time { font-feature-settings: "tnum"; color: rgb(190, 187, 178); }
.container .author { color: rgb(190, 187, 178); }
.container .resolved { color: rgb(120, 118, 110); text-decoration: line-through; }
.container .exports { border-top: 1px solid rgb(48, 48, 43); padding: 10px 16px 12px 16px; }
.container .exports list > row { padding: 3px 0; min-height: 0; }
.container .failed { color: rgb(224, 102, 82); }
.container .problem { background-color: rgb(58, 33, 27); color: rgb(246, 214, 206); padding: 8px 16px; }
)";

// A comment is shown up to here; its tooltip has the rest.
constexpr int linesOfText = 3;

constexpr auto problemIsShownFor = std::chrono::seconds{20};

// What stands between the rows that two lists have in common at their beginnings and at their ends.
struct Difference {
    std::size_t begin = 0;
    std::size_t before = 0; // how many rows go
    std::size_t after = 0; // how many come
};

using CommentRows = std::vector<WindowContent::CommentRow>;

Difference difference(CommentRows const& before, CommentRows const& after) {
    auto const shorter = std::min(before.size(), after.size());
    auto begin = std::size_t{0};
    while (begin < shorter && before[begin] == after[begin])
        ++begin;
    auto end = std::size_t{0};
    while (end < shorter - begin && before[before.size() - 1 - end] == after[after.size() - 1 - end])
        ++end;
    return {begin, before.size() - begin - end, after.size() - begin - end};
}

void setClass(Gtk::Widget& widget, char const* name, bool on) {
    if (on)
        widget.add_css_class(name);
    else
        widget.remove_css_class(name);
}

Gtk::Label& leftAligned(Gtk::Label& label) {
    label.set_xalign(0);
    label.set_ellipsize(Pango::EllipsizeMode::END);
    return label;
}

} // namespace

bool startToolkit() {
    if (!gtk_init_check())
        return false;
    Gtk::init_gtkmm_internals();
    // Our own numbers are written for programs, too.
    std::setlocale(LC_NUMERIC, "C");
    Gtk::Settings::get_default()->property_gtk_application_prefer_dark_theme() = true;
    auto const provider = Gtk::CssProvider::create();
    provider->load_from_data(styleSheet);
    Gtk::StyleContext::add_provider_for_display(Gdk::Display::get_default(), provider,
                                                GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    return true;
}

class MainWindow::CommentItem : public Glib::Object {
public:
    explicit CommentItem(WindowContent::CommentRow theRow)
        : row{std::move(theRow)} {}

    WindowContent::CommentRow const row;
};

MainWindow::MainWindow(std::function<void()> closed)
    : items{Gio::ListStore<CommentItem>::create()} {
    set_title("Review comments");
    set_default_size(620, 560);
    add_css_class("container");
    // For what the rules do not name: the title bar, menus, the theme's own edges.
    Gtk::Settings::get_default()->property_gtk_application_prefer_dark_theme() = true;
    buildHeading();
    buildComments();
    buildExports();
    leftAligned(problem).add_css_class("problem");
    problem.hide();
    content.append(problem);
    set_child(content);
    signal_close_request().connect(
        [closed = std::move(closed)] {
            closed();
            return true;
        },
        false);
}

void MainWindow::showContent(WindowContent const& shown) {
    sequence.set_text(shown.sequence);
    summary.set_text(shown.summary);
    showComments(shown.comments);
    showExports(shown.exports);
}

void MainWindow::showProblem(std::string const& sentence) {
    auto shown = sentence;
    shown.front() = g_ascii_toupper(shown.front());
    problem.set_text(shown);
    problem.set_tooltip_text(shown);
    problem.show();
    problemTimer.start(problemIsShownFor, [this] { problem.hide(); });
}

void MainWindow::buildHeading() {
    auto& box = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 2);
    leftAligned(sequence).add_css_class("sequence");
    leftAligned(summary).add_css_class("quiet");
    box.set_margin(16);
    box.append(sequence);
    box.append(summary);
    content.append(box);
}

void MainWindow::buildComments() {
    addColumn("TIME", &WindowContent::CommentRow::time, 130);
    addColumn("AUTHOR", &WindowContent::CommentRow::author, 130);
    addColumn("COMMENT", &WindowContent::CommentRow::text, -1);
    comments.set_model(Gtk::NoSelection::create(items));
    commentsArea.set_child(comments);
    commentsArea.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    nothing.set_text("Comments appear here when the panel sends them.");
    nothing.add_css_class("quiet");
    stack.add(nothing);
    stack.add(commentsArea);
    stack.set_vexpand(true);
    content.append(stack);
}

void MainWindow::addColumn(Glib::ustring const& title, std::string WindowContent::CommentRow::* text,
                           int width) {
    auto const isTime = text == &WindowContent::CommentRow::time;
    auto const isText = text == &WindowContent::CommentRow::text;
    auto const factory = Gtk::SignalListItemFactory::create();
    factory->signal_setup().connect([isTime, isText](Glib::RefPtr<Gtk::ListItem> const& item) {
        auto& label = leftAligned(*Gtk::make_managed<Gtk::Label>());
        label.set_valign(Gtk::Align::START);
        label.set_wrap(isText);
        label.set_lines(isText ? linesOfText : 1);
        if (!isText)
            label.add_css_class(isTime ? "time" : "author");
        item->set_child(label);
    });
    factory->signal_bind().connect([text, isText](Glib::RefPtr<Gtk::ListItem> const& item) {
        auto const& row = std::dynamic_pointer_cast<CommentItem>(item->get_item())->row;
        auto& label = dynamic_cast<Gtk::Label&>(*item->get_child());
        label.set_text(row.*text);
        if (!isText)
            return;
        label.set_margin_start(row.isReply ? 18 : 0);
        label.set_tooltip_text(row.text);
        setClass(label, "resolved", row.isResolved);
    });
    auto const column = Gtk::ColumnViewColumn::create(title, factory);
    if (width > 0)
        column->set_fixed_width(width);
    else
        column->set_expand(true);
    comments.append_column(column);
}

void MainWindow::buildExports() {
    leftAligned(exportsTitle).set_text("Exports");
    exportsTitle.add_css_class("quiet");
    exports.set_selection_mode(Gtk::SelectionMode::NONE);
    exportsScroller.set_child(exports);
    exportsScroller.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    exportsScroller.set_propagate_natural_height(true);
    exportsScroller.set_max_content_height(110);
    exportsArea.add_css_class("exports");
    exportsArea.set_spacing(6);
    exportsArea.append(exportsTitle);
    exportsArea.append(exportsScroller);
    exportsArea.hide();
    content.append(exportsArea);
}

void MainWindow::showComments(CommentRows const& rows) {
    auto const change = difference(shownComments, rows);
    auto coming = std::vector<Glib::RefPtr<CommentItem>>{};
    for (auto place = change.begin; place < change.begin + change.after; ++place)
        coming.push_back(Glib::make_refptr_for_instance(new CommentItem{rows[place]}));
    // Only what differs, so that the list stays where the person has scrolled it to.
    items->splice(static_cast<guint>(change.begin), static_cast<guint>(change.before), coming);
    shownComments = rows;
    stack.set_visible_child(rows.empty() ? static_cast<Gtk::Widget&>(nothing) : commentsArea);
}

void MainWindow::showExports(std::vector<WindowContent::ExportRow> const& rows) {
    exportsArea.set_visible(!rows.empty());
    if (rows == shownExports)
        return;
    shownExports = rows;
    while (auto* row = exports.get_row_at_index(0))
        exports.remove(*row);
    for (auto const& row : rows) {
        auto& label = leftAligned(*Gtk::make_managed<Gtk::Label>(row.time + "   " + row.text));
        label.set_ellipsize(Pango::EllipsizeMode::MIDDLE);
        label.set_tooltip_text(row.text);
        setClass(label, "failed", row.state == ExportState::Failed);
        exports.append(label);
    }
}

} // namespace workbench
