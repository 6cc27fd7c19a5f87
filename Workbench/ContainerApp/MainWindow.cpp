#include "Workbench/ContainerApp/MainWindow.h"

#include "Workbench/ContainerApp/Widgets.h"

#include <gdk/gdkkeysyms.h>
#include <gtk/gtk.h>
#include <gtkmm/columnviewcolumn.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/init.h>
#include <gtkmm/noselection.h>
#include <gtkmm/settings.h>
#include <gtkmm/shortcut.h>
#include <gtkmm/shortcutaction.h>
#include <gtkmm/shortcutcontroller.h>
#include <gtkmm/shortcuttrigger.h>
#include <gtkmm/signallistitemfactory.h>
#include <gtkmm/stylecontext.h>

#include <algorithm>
#include <clocale>
#include <iterator>

namespace workbench {

namespace {

// The colours of the editor and the panel, so that the windows look like one thing.
constexpr char const* styleSheet = R"(
window.container { background-color: #171714; color: #d9d6cb; }
.container .quiet { color: #9a988d; }
.container columnview, .container columnview > listview, .container list, .container row {
    background-color: transparent; color: #d9d6cb; }
.container columnview > header > button {
    background: none; box-shadow: none; border: none; border-bottom: 1px solid #2b2b27;
    padding: 6px 16px; font-size: 0.8em; font-weight: 600; color: #9a988d; }
.container columnview > listview > row { padding: 0; border-bottom: 1px solid #22221e; }
.container columnview > listview > row > cell { padding: 9px 16px; border: none; }
.container columnview > listview > row:hover { background-color: #1f1f1c; }
.container .time { font-feature-settings: "tnum"; color: #bebbb2; }
.container .author { color: #bebbb2; }
.container .resolved { color: #9a988d; text-decoration: line-through; }
.container .top { padding: 12px 16px; }
.container .exports { background-color: #1b1b18; border-top: 1px solid #2b2b27; padding: 12px 16px; }
.container .exports list > row { padding: 3px 0; min-height: 0; }
.container button {
    color: #d9d6cb; background: #2b2b27; border: none; box-shadow: none; text-shadow: none; min-height: 26px;
    padding: 0 12px; border-radius: 6px; }
.container button:hover { background: #34342f; }
.container button:active, .container button:checked { background: #3d3d37; color: #f0eee4; }
.container button:disabled { color: #6e6c63; background: #22221e; }
.container button.suggested { background: #3d4650; color: #f0eee4; }
.container button.suggested:hover { background: #4a5561; }
.container button.suggested:disabled { background: #22221e; color: #6e6c63; }
.container button:focus-visible, .container row:focus-visible { outline: 1px solid #7d94b3; outline-offset: -1px; }
.container .sequence > button { font-size: 1.15em; font-weight: 600; min-height: 32px; }
.container popover > contents {
    background: #262622; color: #d9d6cb; border: 1px solid #3a3a35; border-radius: 4px; box-shadow: none; }
.container popover listview { background: none; color: #d9d6cb; }
.container popover listview > row:hover { background: #34342f; }
.container popover listview > row:selected { background: #3d4650; color: #f0eee4; }
.container progressbar > trough { background: #2b2b27; border: none; min-height: 4px; }
.container progressbar > trough > progress { background: #7d94b3; border: none; min-height: 4px; }
.container .failed { color: #e6866f; }
.container .news { background-color: #1f2a26; color: #c3ddd0; padding: 8px 16px; }
.container .problem { background-color: #3a211b; color: #f6d6ce; padding: 8px 16px; }
)";

// A comment is shown up to here; its tooltip has the rest.
constexpr int linesOfText = 3;

constexpr int charactersOfAuthor = 9;

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

// The same for every text, in characters: it grows with the letters.
void keepWidth(Gtk::Label& label) {
    label.set_width_chars(charactersOfAuthor);
    label.set_max_width_chars(charactersOfAuthor);
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

MainWindow::MainWindow(WindowActions theActions)
    : actions{std::move(theActions)}
    , items{Gio::ListStore<CommentItem>::create()}
    , exports{actions} {
    set_title("Review comments");
    set_default_size(620, 640);
    add_css_class("container");
    // For what the rules do not name: the title bar, menus, the theme's own edges.
    Gtk::Settings::get_default()->property_gtk_application_prefer_dark_theme() = true;
    buildHeading();
    buildComments();
    leftAligned(problem).set_wrap(true);
    problem.set_lines(linesOfText);
    problem.hide();
    content.append(problem);
    content.append(exports);
    set_child(content);
    buildKeys();
    signal_close_request().connect(
        [this] {
            actions.close();
            return true;
        },
        false);
}

void MainWindow::showContent(WindowContent const& shown) {
    showSequences(shown);
    summary.set_text(shown.summary);
    showComments(shown.comments);
    exports.showFolder(shown.folder);
    exports.showExports(shown.exports);
}

void MainWindow::showProblem(std::string const& sentence) {
    showSentence(sentence, true);
}

void MainWindow::showNews(std::string const& sentence) {
    showSentence(sentence, false);
}

void MainWindow::showSentence(std::string const& sentence, bool isProblem) {
    auto shown = sentence;
    shown.front() = g_ascii_toupper(shown.front());
    setClass(problem, "problem", isProblem);
    setClass(problem, "news", !isProblem);
    problem.set_text(shown);
    problem.set_tooltip_text(shown);
    problem.show();
    problemTimer.start(problemIsShownFor, [this] { problem.hide(); });
}

void MainWindow::buildHeading() {
    auto& box = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 6);
    auto& row = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 8);
    setAccessibleName(sequence, "Sequence");
    sequence.add_css_class("sequence");
    sequence.set_hexpand(true);
    sequence.property_selected().signal_changed().connect([this] {
        auto const chosen = sequence.get_selected();
        if (!isFilling && chosen < shownSequences.size())
            actions.showSequence(shownSequences[chosen].key);
    });
    importButton.set_valign(Gtk::Align::CENTER);
    importButton.set_tooltip_text("Read comments from a table (CSV) or from guides of Kdenlive (Ctrl+O)");
    importButton.signal_clicked().connect([this] { actions.import(); });
    leftAligned(summary).add_css_class("quiet");
    box.add_css_class("top");
    row.append(sequence);
    row.append(importButton);
    box.append(row);
    box.append(summary);
    content.append(box);
}

void MainWindow::buildKeys() {
    auto const keys = Gtk::ShortcutController::create();
    keys->set_scope(Gtk::ShortcutScope::GLOBAL);
    auto const add = [&keys](guint key, std::function<void()> action) {
        auto const pressed = [action = std::move(action)](Gtk::Widget&, Glib::VariantBase const&) {
            action();
            return true;
        };
        keys->add_shortcut(
            Gtk::Shortcut::create(Gtk::KeyvalTrigger::create(key, Gdk::ModifierType::CONTROL_MASK),
                                  Gtk::CallbackAction::create(pressed)));
    };
    add(GDK_KEY_o, [this] { actions.import(); });
    add(GDK_KEY_e, [this] { exports.start(); });
    add(GDK_KEY_w, [this] { close(); });
    add_controller(keys);
}

// A list that a person has opened stays as it is until something else stands in it.
void MainWindow::showSequences(WindowContent const& shown) {
    isFilling = true;
    if (shown.sequences != shownSequences) {
        auto names = std::vector<Glib::ustring>{};
        for (auto const& row : shown.sequences)
            names.emplace_back(row.name);
        shownSequences = shown.sequences;
        setChoices(sequence, names);
    }
    auto const place = std::ranges::find(shownSequences, shown.shown, &WindowContent::SequenceRow::key);
    if (place != shownSequences.end())
        sequence.set_selected(static_cast<guint>(place - shownSequences.begin()));
    sequence.set_sensitive(shownSequences.size() > 1);
    isFilling = false;
}

void MainWindow::buildComments() {
    addColumn("TIME", &WindowContent::CommentRow::time);
    addColumn("AUTHOR", &WindowContent::CommentRow::author);
    addColumn("COMMENT", &WindowContent::CommentRow::text);
    comments.set_model(Gtk::NoSelection::create(items));
    commentsArea.set_child(comments);
    commentsArea.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    nothing.set_text("Comments appear here when the panel sends them, or when they are imported.");
    nothing.set_wrap(true);
    nothing.set_justify(Gtk::Justification::CENTER);
    setAccessibleName(comments, "Comments");
    nothing.add_css_class("quiet");
    stack.add(nothing);
    stack.add(commentsArea);
    stack.set_vexpand(true);
    content.append(stack);
}

void MainWindow::addColumn(Glib::ustring const& title, std::string WindowContent::CommentRow::* text) {
    auto const isTime = text == &WindowContent::CommentRow::time;
    auto const isText = text == &WindowContent::CommentRow::text;
    auto const factory = Gtk::SignalListItemFactory::create();
    factory->signal_setup().connect([isTime, isText](Glib::RefPtr<Gtk::ListItem> const& item) {
        auto& label = leftAligned(*Gtk::make_managed<Gtk::Label>());
        label.set_valign(Gtk::Align::START);
        label.set_wrap(isText);
        label.set_lines(isText ? linesOfText : 1);
        if (isTime)
            label.set_ellipsize(Pango::EllipsizeMode::NONE);
        else if (!isText)
            keepWidth(label);
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
    column->set_expand(isText);
    comments.append_column(column);
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

} // namespace workbench
