#pragma once

#include "Workbench/HostEditor/Glyph.h"
#include "Workbench/HostEditor/SequenceFacts.h"
#include "Workbench/HostEditor/Shuttle.h"
#include "Workbench/HostEditor/TimecodeField.h"

#include <gtkmm/box.h>
#include <gtkmm/centerbox.h>
#include <gtkmm/label.h>
#include <gtkmm/togglebutton.h>

#include <cstdint>

namespace workbench {

// The row below the picture: where the playhead is, the buttons that move it, how long the sequence is. Its
// parts keep their places while the numbers run.
class TransportBar final : public Gtk::CenterBox {
public:
    TransportBar();

    void showSequence(SequenceFacts const* sequence); // null: there is none
    void showFrame(std::int64_t frame);
    void showSpeed(double speed); // 0: paused
    void showComments(bool areThere);

    [[nodiscard]] TimecodeField& timecodeField() { return position; }

    // What the buttons ask for.
    sigc::signal<void()>& signalToggle() { return toggle; }

    sigc::signal<void(std::int64_t)>& signalStep() { return step; } // by so many frames

    sigc::signal<void(Direction)>& signalPin() { return pin; } // to the next one

    sigc::signal<void(double)>& signalMagnify() { return magnify; } // 0: show all

    sigc::signal<void()>& signalFirst() { return first; }

    sigc::signal<void()>& signalLast() { return last; }

private:
    Gtk::Button& addButton(Gtk::Box& row, Glyph::Sign sign, char const* name, char const* hint,
                           sigc::slot<void()> const& pressed);
    void addPlayButton();
    void addMovingButtons();
    void addScaleButtons();

    TimecodeField position;
    Gtk::Label frameNumber;
    Gtk::Box place{Gtk::Orientation::HORIZONTAL};
    Gtk::Box buttons{Gtk::Orientation::HORIZONTAL};
    Gtk::ToggleButton playButton;
    Glyph playSign{Glyph::Sign::Play};
    Gtk::Button* previousPin = nullptr; // both are the row's own
    Gtk::Button* nextPin = nullptr;
    Gtk::Label pace;
    Gtk::Label length;
    Gtk::Box scale{Gtk::Orientation::HORIZONTAL};
    Gtk::Box end{Gtk::Orientation::HORIZONTAL};
    FrameRate rate;
    sigc::signal<void()> toggle;
    sigc::signal<void(std::int64_t)> step;
    sigc::signal<void(Direction)> pin;
    sigc::signal<void(double)> magnify;
    sigc::signal<void()> first;
    sigc::signal<void()> last;
};

} // namespace workbench
