#include "Workbench/HostEditor/TimelineView.h"

#include "Workbench/HostEditor/Accessible.h"
#include "Workbench/HostEditor/PinButton.h"
#include "Workbench/HostEditor/PlayheadLine.h"
#include "Workbench/HostEditor/Timecode.h"
#include "Workbench/HostEditor/TimelineGround.h"

#include <glibmm/main.h>
#include <gtkmm/gesturedrag.h>
#include <gtkmm/snapshot.h>
#include <gtkmm/tooltip.h>

#include <algorithm>
#include <cmath>

namespace workbench {

TimelineView::TimelineView()
    : ground(std::make_unique<TimelineGround>())
    , playhead(std::make_unique<PlayheadLine>()) {
    add_css_class("workbench-timeline");
    set_focusable(true);
    set_hexpand(true);
    set_overflow(Gtk::Overflow::HIDDEN);
    setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_SLIDER);
    setAccessibleName(*this, "Timeline");
    ground->set_can_target(false);
    ground->set_parent(*this);
    playhead->set_parent(*this);
    listenToPointer();
    listenForTooltips();
    showSequence(nullptr);
}

TimelineView::~TimelineView() {
    regrouping.disconnect();
    for (auto const& button : buttons)
        button->unparent();
    playhead->unparent();
    ground->unparent();
}

void TimelineView::listenToPointer() {
    auto const drag = Gtk::GestureDrag::create();
    drag->set_button(GDK_BUTTON_PRIMARY);
    drag->signal_drag_begin().connect([this, gesture = drag.get()](double x, double y) {
        // A pin asks for its own frame.
        if (pick(x, y) != this) {
            gesture->set_state(Gtk::EventSequenceState::DENIED);
            return;
        }
        grab_focus();
        if (sequence)
            wanted.emit(axis().frameUnder(x));
    });
    drag->signal_drag_update().connect([this, gesture = drag.get()](double x, double) {
        double start = 0;
        double ignored = 0;
        if (sequence && gesture->get_start_point(start, ignored))
            wanted.emit(axis().frameUnder(start + x));
    });
    add_controller(drag);
}

void TimelineView::listenForTooltips() {
    set_has_tooltip(true);
    auto const query = [this](int x, int, bool, Glib::RefPtr<Gtk::Tooltip> const& tooltip) {
        auto const text = marksNear(x);
        tooltip->set_text(text);
        return !text.empty();
    };
    signal_query_tooltip().connect(query, false);
}

void TimelineView::showSequence(SequenceFacts const* shown) {
    sequence = shown ? std::optional{*shown} : std::nullopt;
    ground->showSequence(shown);
    ground->setAxis(axis());
    showFrame(0);
    rebuildPins();
}

void TimelineView::showFrame(std::int64_t shown) {
    frame = shown;
    auto const last = static_cast<double>(sequence ? sequence->length - 1 : 0);
    auto const words = sequence ? timecode(frame, sequence->rate) : std::string{"no sequence"};
    setAccessibleValue(*this, static_cast<double>(frame), last, words);
    playhead->showAt(sequence ? std::optional{axis().positionOf(frame)} : std::nullopt);
}

void TimelineView::showPins(std::vector<Pin> shown, bool areLive) {
    pins = std::move(shown);
    pinsAreLive = areLive;
    rebuildPins();
}

void TimelineView::seekPin(Direction direction, std::int64_t from) {
    if (!sequence)
        return;
    if (auto const found = nextPin(pins, axis(), from, direction))
        wanted.emit(*found);
}

void TimelineView::rebuildPins() {
    for (auto const& button : buttons)
        button->unparent();
    buttons.clear();
    ground->showPins(sequence ? pins : std::vector<Pin>{}, pinsAreLive);
    if (!sequence)
        return;
    for (auto const& group : groupPins(pins, axis(), PinButton::Reach)) {
        auto button = std::make_unique<PinButton>(group, pins, pinsAreLive);
        button->signal_clicked().connect([this, at = group.frame] { wanted.emit(at); });
        // Below the playhead, in the order of time, in which the keyboard reaches them, too.
        button->insert_before(*this, *playhead);
        buttons.push_back(std::move(button));
    }
    queue_allocate();
}

// Children cannot come and go while the widget is being laid out.
void TimelineView::regroupLater() {
    if (pins.empty() || regrouping.connected())
        return;
    regrouping = Glib::signal_idle().connect([this] {
        rebuildPins();
        return false;
    });
}

void TimelineView::placePins() {
    for (auto const& button : buttons) {
        auto const left =
            static_cast<int>(std::lround(axis().positionOf(button->frame()))) - PinButton::Reach / 2;
        button->size_allocate({left, TimelineGround::PinsTop, PinButton::Reach, TimelineGround::PinsHeight},
                              -1);
    }
}

TimeAxis TimelineView::axis() const {
    return {Margin, static_cast<double>(axisWidth), sequence ? sequence->length : 1,
            sequence ? sequence->rate : FrameRate{}};
}

std::string TimelineView::marksNear(double position) const {
    if (!sequence)
        return {};
    std::string text;
    for (auto const& mark : sequence->marks)
        if (std::abs(axis().positionOf(mark.frame) - position) <= PinButton::Reach / 2.0)
            text += (text.empty() ? "" : "\n") + mark.text;
    return text;
}

void TimelineView::snapshot_vfunc(Glib::RefPtr<Gtk::Snapshot> const& snapshot) {
    for (auto* child = get_first_child(); child; child = child->get_next_sibling())
        snapshot_child(*child, snapshot);
}

void TimelineView::measure_vfunc(Gtk::Orientation orientation, int, int& minimum, int& natural,
                                 int& minimumBaseline, int& naturalBaseline) const {
    minimum = natural = orientation == Gtk::Orientation::VERTICAL ? TimelineGround::Height : 2 * Margin + 100;
    minimumBaseline = naturalBaseline = -1;
}

void TimelineView::size_allocate_vfunc(int width, int height, int) {
    auto const room = std::max(width - 2 * Margin, 1);
    ground->size_allocate({0, 0, width, height}, -1);
    playhead->size_allocate({0, 0, width, height}, -1);
    if (room != axisWidth) {
        axisWidth = room;
        ground->setAxis(axis());
        showFrame(frame);
        regroupLater();
    }
    placePins();
}

} // namespace workbench
