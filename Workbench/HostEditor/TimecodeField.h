#pragma once

#include "Workbench/HostEditor/TimecodeEntry.h"

#include <gtkmm/button.h>
#include <gtkmm/entry.h>
#include <gtkmm/label.h>
#include <gtkmm/popover.h>
#include <gtkmm/stack.h>
#include <sigc++/sigc++.h>

namespace workbench {

// Shows where the playhead is, and takes a timecode to send it to: after a click, or when editing begins with
// a typed character. What is wrong with an entry is said beside it, and nothing moves.
class TimecodeField final : public Gtk::Stack {
public:
    TimecodeField();
    ~TimecodeField() override;

    void showSequence(FrameRate shownRate, std::int64_t length);
    void showFrame(std::int64_t frame);

    // With this text instead of the timecode, the cursor behind it.
    void beginWith(std::string const& text);
    void begin();

    sigc::signal<void(std::int64_t)>& signalEntered() { return entered; }

    // Editing has ended, with a frame or without; the keyboard is free.
    sigc::signal<void()>& signalLeft() { return left; }

private:
    void listen();
    void settle();
    void leave();
    void complain(std::string const& text);

    TimecodeContext context;
    Gtk::Button button;
    Gtk::Label label;
    Gtk::Entry entry;
    Gtk::Popover bubble;
    Gtk::Label complaint;
    bool isEditing = false;
    sigc::signal<void(std::int64_t)> entered;
    sigc::signal<void()> left;
};

} // namespace workbench
