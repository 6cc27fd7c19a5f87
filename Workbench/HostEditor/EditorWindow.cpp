#include "Workbench/HostEditor/EditorWindow.h"

#include "Workbench/HostEditor/Editor.h"

#include <gdkmm/display.h>
#include <gdkmm/monitor.h>
#include <gtkmm/eventcontrollerkey.h>

#include <algorithm>

namespace workbench {

namespace {

constexpr auto ProgramTitle = "Zelvix Workbench";

// As large as is useful, and not larger than the screen.
PixelSize windowSize() {
    PixelSize size{1280, 860};
    auto const monitors = Gdk::Display::get_default()->get_monitors();
    auto const monitor = std::dynamic_pointer_cast<Gdk::Monitor>(monitors->get_object(0));
    if (!monitor)
        return size;
    Gdk::Rectangle room;
    monitor->get_geometry(room);
    return {std::min(size.width, room.get_width()), std::min(size.height, room.get_height())};
}

} // namespace

EditorWindow::EditorWindow(Editor& shownEditor)
    : editor(shownEditor) {
    add_css_class("workbench");
    set_title(ProgramTitle);
    arrange();
    followEditor();
    listenToControls();
    listenToKeys();
    for (auto const& problem : editor.problems())
        notices.add(problem);
    sequences.offer(editor.sequences());
    showActive();
    timeline.grab_focus();
}

void EditorWindow::arrange() {
    auto const size = windowSize();
    set_default_size(size.width, size.height);
    head.set_title_widget(*Gtk::make_managed<Gtk::Box>());
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
    split.set_position(size.width - PanelPane::Width);
    set_child(split);
}

void EditorWindow::followEditor() {
    editor.signalActiveChanged().connect(sigc::mem_fun(*this, &EditorWindow::showActive));
    editor.signalPositionChanged().connect(sigc::mem_fun(*this, &EditorWindow::showTarget));
    editor.signalTargetChanged().connect(sigc::mem_fun(*this, &EditorWindow::showTarget));
    editor.signalPlayingChanged().connect(
        sigc::track_object([this] { transport.showSpeed(editor.speed()); }, *this));
    editor.signalPicture().connect(sigc::mem_fun(picture, &PictureView::show));
}

void EditorWindow::listenToControls() {
    picture.signalArea().connect([this](PixelSize area) { editor.setPictureArea(area); });
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

// What the panel, an open list and a text field are typed into stays theirs.
bool EditorWindow::keysAreOurs() {
    auto const* const focus = get_focus();
    return !focus || (focus->is_ancestor(stage) && !GTK_IS_EDITABLE(focus->gobj()));
}

bool EditorWindow::pressKey(guint key, Gdk::ModifierType modifiers) {
    using Gdk::ModifierType;
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

void EditorWindow::showActive() {
    auto const* const sequence = editor.activeSequence();
    set_title(sequence ? sequence->name + " – " + ProgramTitle : ProgramTitle);
    sequences.showActive(editor.activeIndex());
    transport.showSequence(sequence);
    timeline.showSequence(sequence);
    if (!sequence)
        picture.say(
            "No sequence is open",
            "Start the workbench with a video, a still, a sound file or a project:\nzelvix-workbench FILE…");
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
