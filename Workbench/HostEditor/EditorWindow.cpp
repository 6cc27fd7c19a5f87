#include "Workbench/HostEditor/EditorWindow.h"

#include "Workbench/HostEditor/Editor.h"

#include <gdkmm/display.h>
#include <gdkmm/monitor.h>
#include <gtkmm/droptarget.h>
#include <gtkmm/eventcontrollerkey.h>

#include <algorithm>
#include <memory>

namespace workbench {

namespace {

constexpr auto ProgramTitle = "Zelvix Workbench";

// As large as it was, else as is useful; never larger than the screen.
PixelSize windowSize(WindowState const& earlier) {
    constexpr PixelSize useful{1280, 860};
    auto const size = earlier.size.value_or(useful);
    auto const monitors = Gdk::Display::get_default()->get_monitors();
    auto const monitor = std::dynamic_pointer_cast<Gdk::Monitor>(monitors->get_object(0));
    if (!monitor)
        return size;
    Gdk::Rectangle room;
    monitor->get_geometry(room);
    return {std::min(size.width, room.get_width()), std::min(size.height, room.get_height())};
}

} // namespace

EditorWindow::EditorWindow(Editor& shownEditor, WindowState const& earlier)
    : editor(shownEditor)
    , recent(earlier.recentFiles) {
    add_css_class("workbench");
    set_title(ProgramTitle);
    arrange(earlier);
    followEditor();
    listenToControls();
    listenToKeys();
    listenToDrops();
    showFiles();
    showActive();
    timeline.setMagnification(earlier.magnification);
    timeline.grab_focus();
}

void EditorWindow::arrange(WindowState const& earlier) {
    auto const size = windowSize(earlier);
    set_default_size(size.width, size.height);
    if (earlier.isMaximized)
        maximize();
    head.set_title_widget(*Gtk::make_managed<Gtk::Box>());
    head.pack_start(opening);
    head.pack_start(sequences);
    set_titlebar(head);
    stage.add_css_class("workbench-stage");
    for (auto* const part : std::initializer_list<Gtk::Widget*>{&notices, &picture, &transport, &timeline})
        stage.append(*part);
    split.set_start_child(stage);
    split.set_end_child(panelPane);
    split.set_resize_start_child(true);
    split.set_resize_end_child(false);
    split.set_shrink_start_child(false);
    split.set_shrink_end_child(false);
    split.set_position(size.width - earlier.panelWidth.value_or(PanelPane::Width));
    body.set_child(split);
    placeLight();
    set_child(body);
}

// On the divider, wherever that is dragged to.
void EditorWindow::placeLight() {
    light.set_halign(Gtk::Align::START);
    light.set_valign(Gtk::Align::CENTER);
    auto const follow = [this] {
        light.set_margin_start(std::max(split.get_position() - ConnectionLight::Width / 2, 0));
    };
    split.property_position().signal_changed().connect(follow);
    follow();
    body.add_overlay(light);
}

void EditorWindow::followEditor() {
    editor.signalFilesChanged().connect(sigc::mem_fun(*this, &EditorWindow::showFiles));
    editor.signalActiveChanged().connect(sigc::mem_fun(*this, &EditorWindow::showActive));
    editor.signalPositionChanged().connect(sigc::mem_fun(*this, &EditorWindow::showTarget));
    editor.signalTargetChanged().connect(sigc::mem_fun(*this, &EditorWindow::showTarget));
    editor.signalPlayingChanged().connect(
        sigc::track_object([this] { transport.showSpeed(editor.speed()); }, *this));
    editor.signalPicture().connect(sigc::mem_fun(picture, &PictureView::show));
}

void EditorWindow::listenToControls() {
    picture.signalArea().connect([this](PixelSize area) { editor.setPictureArea(area); });
    opening.signalFiles().connect([this](std::vector<std::string> const& files) {
        editor.open(files);
        timeline.grab_focus();
    });
    transport.signalToggle().connect([this] { editor.togglePlaying(); });
    transport.signalStep().connect([this](std::int64_t frames) { editor.step(frames); });
    transport.signalPin().connect(
        [this](Direction direction) { timeline.seekPin(direction, editor.target()); });
    transport.signalMagnify().connect(
        [this](double factor) { factor > 0 ? timeline.magnify(factor) : timeline.showAll(); });
    transport.signalFirst().connect([this] { editor.seek(0); });
    transport.signalLast().connect([this] { editor.seekToEnd(); });
    transport.timecodeField().signalEntered().connect([this](std::int64_t frame) { editor.seek(frame); });
    transport.timecodeField().signalLeft().connect([this] { timeline.grab_focus(); });
    timeline.signalSeek().connect([this](std::int64_t frame) { editor.seek(frame); });
    sequences.signalChosen().connect([this](std::size_t index) {
        editor.activate(index);
        timeline.grab_focus();
    });
}

void EditorWindow::listenToKeys() {
    auto const keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType modifiers) {
            return keysAreOurs() && pressKey(key, modifiers);
        },
        false);
    keys->signal_key_released().connect([this](guint key, guint, Gdk::ModifierType) {
        if (gdk_keyval_to_lower(key) == GDK_KEY_k)
            isHolding = false;
    });
    add_controller(keys);
    // A key that is let go elsewhere is not heard of.
    property_is_active().signal_changed().connect([this] { isHolding = false; });
}

// Files from a file manager, wherever they are let go outside of the panel's page.
void EditorWindow::listenToDrops() {
    auto const target = Gtk::DropTarget::create(GDK_TYPE_FILE_LIST, Gdk::DragAction::COPY);
    target->signal_drop().connect(
        [this](Glib::ValueBase const& value, double, double) {
            std::vector<Glib::RefPtr<Gio::File>> files;
            std::unique_ptr<GSList, decltype(&g_slist_free)> const list{
                gdk_file_list_get_files(static_cast<GdkFileList*>(g_value_get_boxed(value.gobj()))),
                &g_slist_free};
            for (auto const* item = list.get(); item; item = item->next)
                files.push_back(Glib::wrap(G_FILE(item->data), true));
            editor.open(localPaths(files));
            return true;
        },
        false);
    add_controller(target);
}

// What the panel, an open list and a text field are typed into stays theirs.
bool EditorWindow::keysAreOurs() {
    auto* const focus = get_focus();
    return !focus || (focus->is_ancestor(stage) && !GTK_IS_EDITABLE(focus->gobj()));
}

bool EditorWindow::pressKey(guint key, Gdk::ModifierType modifiers) {
    using Gdk::ModifierType;
    auto const isControl = (modifiers & ModifierType::CONTROL_MASK) != ModifierType{};
    if (isControl && gdk_keyval_to_lower(key) == GDK_KEY_o) {
        opening.openDialog();
        return true;
    }
    if ((modifiers & (ModifierType::CONTROL_MASK | ModifierType::ALT_MASK)) != ModifierType{})
        return false;
    auto const isShifted = (modifiers & ModifierType::SHIFT_MASK) != ModifierType{};
    auto const stride = isShifted ? framesInSecond() : std::int64_t{1};
    switch (key) {
    case GDK_KEY_space:
        editor.togglePlaying();
        return true;
    case GDK_KEY_Left:
        editor.step(-stride);
        return true;
    case GDK_KEY_Right:
        editor.step(stride);
        return true;
    case GDK_KEY_Home:
        editor.seek(0);
        return true;
    case GDK_KEY_End:
        editor.seekToEnd();
        return true;
    case GDK_KEY_Up:
        timeline.seekPin(Direction::Back, editor.target());
        return true;
    case GDK_KEY_Down:
        timeline.seekPin(Direction::On, editor.target());
        return true;
    case GDK_KEY_t:
    case GDK_KEY_T:
        transport.timecodeField().begin();
        return true;
    default:
        return pressShuttleKey(key) || pressScaleKey(key) || typeTimecode(key);
    }
}

bool EditorWindow::pressShuttleKey(guint key) {
    auto const lower = gdk_keyval_to_lower(key);
    if (lower == GDK_KEY_k) {
        isHolding = true;
        editor.pause();
        return true;
    }
    if (lower != GDK_KEY_j && lower != GDK_KEY_l)
        return false;
    auto const isOn = lower == GDK_KEY_l;
    if (isHolding)
        editor.step(isOn ? 1 : -1);
    else
        editor.shuttle(isOn ? Direction::On : Direction::Back);
    return true;
}

bool EditorWindow::pressScaleKey(guint key) {
    constexpr double step = 1.5;
    switch (key) {
    case GDK_KEY_plus:
    case GDK_KEY_equal:
    case GDK_KEY_KP_Add:
        timeline.magnify(step);
        return true;
    case GDK_KEY_minus:
    case GDK_KEY_KP_Subtract:
        timeline.magnify(1 / step);
        return true;
    case GDK_KEY_f:
    case GDK_KEY_F:
        timeline.showAll();
        return true;
    case GDK_KEY_Page_Up:
    case GDK_KEY_Page_Down:
        timeline.scrollPages(key == GDK_KEY_Page_Up ? -1 : 1);
        return true;
    default:
        return false;
    }
}

bool EditorWindow::typeTimecode(guint key) {
    auto const character = gdk_keyval_to_unicode(key);
    if (character < '0' || character > '9')
        return false;
    transport.timecodeField().beginWith(std::string(1, static_cast<char>(character)));
    return true;
}

void EditorWindow::showPins(std::vector<Pin> pins, bool areLive) {
    transport.showComments(!pins.empty());
    timeline.showPins(std::move(pins), areLive);
}

std::int64_t EditorWindow::framesInSecond() const {
    auto const* const sequence = editor.activeSequence();
    return sequence ? std::max(sequence->rate.numerator / sequence->rate.denominator, 1) : 1;
}

WindowState EditorWindow::state() const {
    WindowState now;
    int width = 0;
    int height = 0;
    get_default_size(width, height);
    now.size = PixelSize{width, height};
    now.isMaximized = is_maximized();
    now.panelWidth = split.get_width() - split.get_position();
    now.magnification = timeline.magnification();
    now.recentFiles = recent.paths();
    return now;
}

void EditorWindow::showFiles() {
    for (; seenProblems < editor.problems().size(); ++seenProblems)
        notices.add(editor.problems()[seenProblems]);
    for (; seenFiles < editor.openedFiles().size(); ++seenFiles)
        recent.add(editor.openedFiles()[seenFiles]);
    opening.offerRecent(recent.paths());
    sequences.offer(editor.sequences());
    sequences.showActive(editor.activeIndex());
}

void EditorWindow::showActive() {
    auto const* const sequence = editor.activeSequence();
    set_title(sequence ? sequence->name + " – " + ProgramTitle : ProgramTitle);
    sequences.showActive(editor.activeIndex());
    transport.showSequence(sequence);
    timeline.showSequence(sequence);
    if (!sequence)
        picture.say("No sequence is open",
                    "Open a video, a still, a sound file or a project (Ctrl+O), or drop it here.");
    else if (!sequence->hasPicture)
        picture.say("Sound only", sequence->name);
    else
        picture.say({}, {});
    if (sequence)
        picture.setShape(sequence->displayAspect);
    showTarget();
}

void EditorWindow::showTarget() {
    transport.showFrame(editor.target());
    timeline.showFrame(editor.target());
}

} // namespace workbench
