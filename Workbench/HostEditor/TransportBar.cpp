#include "Workbench/HostEditor/TransportBar.h"

#include "Workbench/HostEditor/Accessible.h"
#include "Workbench/HostEditor/Timecode.h"

#include <cmath>
#include <string>

namespace workbench {

namespace {

constexpr double ScaleStep = 1.5;

}

TransportBar::TransportBar() {
    add_css_class("workbench-transport");
    frameNumber.add_css_class("workbench-quiet");
    frameNumber.set_xalign(0);
    frameNumber.set_valign(Gtk::Align::BASELINE);
    place.append(position);
    place.append(frameNumber);
    set_start_widget(place);

    buttons.add_css_class("workbench-buttons");
    addMovingButtons();
    set_center_widget(buttons);

    length.add_css_class("workbench-quiet");
    length.set_ellipsize(Pango::EllipsizeMode::END);
    constexpr int timecodeAndDots = 13; // the rate behind them may be cut off
    length.set_width_chars(timecodeAndDots);
    length.set_xalign(1);
    pace.add_css_class("workbench-quiet");
    pace.set_xalign(1);
    constexpr int signAndTimes = 3;
    pace.set_width_chars(signAndTimes);
    end.append(pace);
    end.append(length);
    addScaleButtons();
    end.append(scale);
    set_end_widget(end);
    showSequence(nullptr);
    showSpeed(0);
    showComments(false);
}

void TransportBar::addMovingButtons() {
    addButton(buttons, Glyph::Sign::First, "First frame", "First frame (Home)", [this] { first.emit(); });
    previousPin = &addButton(buttons, Glyph::Sign::PreviousPin, "Previous comment", "Previous comment (Up)",
                             [this] { pin.emit(Direction::Back); });
    addButton(buttons, Glyph::Sign::Previous, "Previous frame", "One frame back (Left)",
              [this] { step.emit(-1); });
    addPlayButton();
    addButton(buttons, Glyph::Sign::Next, "Next frame", "One frame on (Right)", [this] { step.emit(1); });
    nextPin = &addButton(buttons, Glyph::Sign::NextPin, "Next comment", "Next comment (Down)",
                         [this] { pin.emit(Direction::On); });
    addButton(buttons, Glyph::Sign::Last, "Last frame", "Last frame (End)", [this] { last.emit(); });
}

void TransportBar::addScaleButtons() {
    scale.add_css_class("workbench-buttons");
    addButton(scale, Glyph::Sign::Less, "Zoom out", "Zoom out (-, or Control and the wheel)",
              [this] { magnify.emit(1 / ScaleStep); });
    addButton(scale, Glyph::Sign::More, "Zoom in", "Zoom in (+, or Control and the wheel)",
              [this] { magnify.emit(ScaleStep); });
    addButton(scale, Glyph::Sign::All, "Show all", "Show the whole sequence (F)",
              [this] { magnify.emit(0); });
}

Gtk::Button& TransportBar::addButton(Gtk::Box& row, Glyph::Sign sign, char const* name, char const* hint,
                                     sigc::slot<void()> const& pressed) {
    auto* const button = Gtk::make_managed<Gtk::Button>();
    button->set_child(*Gtk::make_managed<Glyph>(sign));
    button->set_has_frame(false);
    button->set_focus_on_click(false); // the keys stay with the timeline
    button->set_tooltip_text(hint);
    setAccessibleName(*button, name);
    button->signal_clicked().connect(pressed);
    row.append(*button);
    return *button;
}

void TransportBar::addPlayButton() {
    playButton.set_child(playSign);
    playButton.set_has_frame(false);
    playButton.set_focus_on_click(false);
    playButton.set_tooltip_text("Play or pause (Space; L and J faster, on and back)");
    setAccessibleName(playButton, "Play");
    playButton.signal_clicked().connect([this] { toggle.emit(); });
    buttons.append(playButton);
}

void TransportBar::showSequence(SequenceFacts const* sequence) {
    set_sensitive(sequence != nullptr);
    rate = sequence ? sequence->rate : FrameRate{};
    length.set_text(sequence ? timecode(sequence->length, rate) + "   " + rateText(rate) : std::string{});
    auto const digits = sequence ? std::to_string(sequence->length).size() : std::size_t{1};
    frameNumber.set_width_chars(static_cast<int>(digits) + 6);
    position.showSequence(rate, sequence ? sequence->length : 0);
    showFrame(0);
}

void TransportBar::showFrame(std::int64_t frame) {
    position.showFrame(frame);
    frameNumber.set_text("frame " + std::to_string(frame));
    // A label takes each new text for its name, too; this one keeps the name by which it is found.
    setAccessibleName(frameNumber, "Frame");
}

void TransportBar::showSpeed(double speed) {
    playButton.set_active(speed != 0);
    playSign.setSign(speed != 0 ? Glyph::Sign::Pause : Glyph::Sign::Play);
    auto const times = std::to_string(static_cast<int>(std::abs(speed))) + "×";
    auto const isOrdinary = speed == 0 || speed == 1;
    pace.set_text(isOrdinary ? "" : (speed < 0 ? "−" : "") + times);
    setAccessibleName(pace, "Speed");
}

void TransportBar::showComments(bool areThere) {
    previousPin->set_sensitive(areThere);
    nextPin->set_sensitive(areThere);
}

} // namespace workbench
