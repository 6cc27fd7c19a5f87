#include "Workbench/HostEditor/TimelineView.h"

#include "Workbench/HostEditor/Accessible.h"
#include "Workbench/HostEditor/PinButton.h"
#include "Workbench/HostEditor/PlayheadLine.h"
#include "Workbench/HostEditor/Timecode.h"
#include "Workbench/HostEditor/TimelineGround.h"

#include <glibmm/main.h>
#include <gtkmm/eventcontrollermotion.h>
#include <gtkmm/eventcontrollerscroll.h>
#include <gtkmm/gesturedrag.h>
#include <gtkmm/snapshot.h>
#include <gtkmm/tooltip.h>

#include <algorithm>
#include <cmath>

namespace workbench {

namespace {

constexpr double WheelPixels = 80; // for one notch
constexpr double WheelFactor = 1.25;

} // namespace

TimelineView::TimelineView()
    : ground(std::make_unique<TimelineGround>())
    , playhead(std::make_unique<PlayheadLine>())
    , stretch(Gtk::Adjustment::create(0, 0, 1, 1, 1, 1))
    , bar(stretch, Gtk::Orientation::HORIZONTAL) {
    add_css_class("workbench-timeline");
    set_focusable(true);
    set_hexpand(true);
    set_overflow(Gtk::Overflow::HIDDEN);
    setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_SLIDER);
    setAccessibleName(*this, "Timeline");
    ground->set_can_target(false);
    ground->set_parent(*this);
    playhead->set_parent(*this);
    bar.add_css_class("workbench-stretch");
    bar.set_parent(*this);
    setAccessibleName(bar, "Timeline position");
    stretch->signal_value_changed().connect([this] {
        if (stretch->get_value() == scale.offset())
            return;
        scale.scrollTo(stretch->get_value());
        showScale();
    });
    listenToPointer();
    listenToWheel();
    listenForTooltips();
    showSequence(nullptr);
}

TimelineView::~TimelineView() {
    regrouping.disconnect();
    for (auto const& button : buttons)
        button->unparent();
    bar.unparent();
    playhead->unparent();
    ground->unparent();
}

void TimelineView::listenToPointer() {
    auto const drag = Gtk::GestureDrag::create();
    drag->set_button(GDK_BUTTON_PRIMARY);
    drag->signal_drag_begin().connect([this](double x, double y) {
        // A pin asks for its own frame. Its press is passed over, not denied: that would cost the next one,
        // too.
        isDragging = pick(x, y) == this;
        if (!isDragging)
            return;
        grab_focus();
        if (sequence)
            wanted.emit(axis().frameUnder(x));
    });
    drag->signal_drag_update().connect([this, gesture = drag.get()](double x, double) {
        double start = 0;
        double ignored = 0;
        if (isDragging && sequence && gesture->get_start_point(start, ignored))
            wanted.emit(axis().frameUnder(start + x));
    });
    add_controller(drag);
}

void TimelineView::listenToWheel() {
    auto const motion = Gtk::EventControllerMotion::create();
    motion->signal_motion().connect([this](double x, double) { pointer = x; });
    motion->signal_enter().connect([this](double x, double) { pointer = x; });
    add_controller(motion);
    auto const wheel = Gtk::EventControllerScroll::create();
    wheel->set_flags(Gtk::EventControllerScroll::Flags::BOTH_AXES);
    wheel->signal_scroll().connect(
        [this, controller = wheel.get()](double dx, double dy) {
            auto const state = controller->get_current_event_state();
            return turnWheel(dx, dy, (state & Gdk::ModifierType::CONTROL_MASK) != Gdk::ModifierType{});
        },
        false);
    add_controller(wheel);
}

bool TimelineView::turnWheel(double dx, double dy, bool magnifies) {
    if (magnifies)
        scale.magnify(std::pow(WheelFactor, -dy), pointer - Margin);
    else
        scale.scrollBy((dx + dy) * WheelPixels);
    showScale();
    return true;
}

void TimelineView::magnify(double factor) {
    auto const place = axis().positionOf(frame) - Margin;
    auto const isInSight = place >= 0 && place <= scale.page();
    scale.magnify(factor, isInSight ? place : scale.page() / 2);
    showScale();
}

void TimelineView::showAll() {
    setMagnification(1);
}

void TimelineView::setMagnification(double times) {
    scale.setMagnification(times);
    showScale();
}

void TimelineView::scrollPages(double pages) {
    scale.scrollBy(pages * scale.page());
    showScale();
}

// Everything that depends on the scale, in its new place.
void TimelineView::showScale() {
    rescale();
    rebuildPins();
}

void TimelineView::rescale() {
    ground->setAxis(axis());
    stretch->configure(scale.offset(), 0, scale.total(), WheelPixels, scale.page(), scale.page());
    bar.set_child_visible(scale.magnification() > 1);
    showPlayhead();
}

void TimelineView::showPlayhead() {
    auto const place = axis().positionOf(frame);
    auto const isInSight = place >= Margin && place <= Margin + scale.page();
    playhead->showAt(sequence && isInSight ? std::optional{place} : std::nullopt);
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
    scale.setSequence(sequence ? sequence->length : 1, sequence ? sequence->rate : FrameRate{});
    showFrame(0);
    showScale();
}

void TimelineView::showFrame(std::int64_t shown) {
    frame = shown;
    auto const last = static_cast<double>(sequence ? sequence->length - 1 : 0);
    auto const words = sequence ? timecode(frame, sequence->rate) : std::string{"no sequence"};
    setAccessibleValue(*this, static_cast<double>(frame), last, words);
    if (scale.reveal(frame))
        showScale();
    else
        showPlayhead();
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
        if (group.position < 0 || group.position > width)
            continue;
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

std::string TimelineView::marksNear(double position) const {
    if (!sequence)
        return {};
    std::string text;
    for (auto const& mark : sequence->marks)
        if (std::abs(axis().positionOf(mark.frame) - position) <= PinButton::Reach / 2.0)
            text += (text.empty() ? "" : "\n") + timecode(mark.frame, sequence->rate) + "  " + mark.text;
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

void TimelineView::size_allocate_vfunc(int newWidth, int height, int) {
    constexpr int barHeight = 8;
    ground->size_allocate({0, 0, newWidth, height}, -1);
    playhead->size_allocate({0, 0, newWidth, height}, -1);
    if (newWidth != width) {
        width = newWidth;
        scale.setRoom(newWidth - 2.0 * Margin);
        rescale();
        regroupLater();
    }
    // After its new scale, which moves its parts.
    bar.size_allocate({Margin, height - barHeight, std::max(newWidth - 2 * Margin, 1), barHeight}, -1);
    placePins();
}

} // namespace workbench
