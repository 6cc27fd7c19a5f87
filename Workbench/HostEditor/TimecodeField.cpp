#include "Workbench/HostEditor/TimecodeField.h"

#include "Workbench/HostEditor/Accessible.h"
#include "Workbench/HostEditor/Timecode.h"

#include <gtkmm/eventcontrollerfocus.h>
#include <gtkmm/eventcontrollerkey.h>

#include <utility>

namespace workbench {

TimecodeField::TimecodeField() {
    label.add_css_class("workbench-timecode");
    label.set_xalign(0);
    button.set_child(label);
    button.add_css_class("workbench-entry-button");
    button.set_has_frame(false);
    button.set_focus_on_click(false);
    button.set_tooltip_text("Go to a timecode (T, or type digits; + and - are relative)");
    setAccessibleName(button, "Enter a timecode");
    entry.add_css_class("workbench-timecode");
    entry.set_has_frame(false);
    constexpr int characters = 12;
    entry.set_width_chars(characters);
    entry.set_max_width_chars(characters);
    setAccessibleName(entry, "Go to timecode");
    complaint.set_wrap(true);
    setAccessibleName(complaint, "What is wrong");
    bubble.set_child(complaint);
    bubble.set_autohide(false); // the entry keeps the keyboard
    bubble.set_parent(entry);
    add(button);
    add(entry);
    listen();
}

TimecodeField::~TimecodeField() {
    isEditing = false;
    bubble.unparent();
}

void TimecodeField::listen() {
    button.signal_clicked().connect([this] { begin(); });
    entry.signal_activate().connect([this] { settle(); });
    entry.signal_changed().connect([this] { bubble.popdown(); });
    auto const focus = Gtk::EventControllerFocus::create();
    focus->signal_leave().connect([this] { leave(); });
    entry.add_controller(focus);
    auto const keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType) {
            if (key != GDK_KEY_Escape)
                return false;
            leave();
            return true;
        },
        false);
    entry.add_controller(keys);
}

void TimecodeField::showSequence(FrameRate shownRate, std::int64_t length) {
    context = {shownRate, length, 0};
    leave();
    showFrame(0);
}

void TimecodeField::showFrame(std::int64_t frame) {
    context.frame = frame;
    label.set_text(timecode(frame, context.rate));
    // A label takes each new text for its name, too; this one keeps the name by which it is found.
    setAccessibleName(label, "Timecode");
}

void TimecodeField::beginWith(std::string const& text) {
    if (context.length == 0)
        return;
    isEditing = true;
    entry.set_text(text);
    set_visible_child(entry);
    entry.grab_focus_without_selecting();
    entry.set_position(-1);
}

void TimecodeField::begin() {
    beginWith(timecode(context.frame, context.rate));
    entry.select_region(0, -1);
}

void TimecodeField::settle() {
    auto const answer = readTimecode(entry.get_text().raw(), context);
    if (auto const* const wrong = std::get_if<std::string>(&answer)) {
        complain(*wrong);
        return;
    }
    leave();
    entered.emit(std::get<std::int64_t>(answer));
}

void TimecodeField::leave() {
    if (!std::exchange(isEditing, false))
        return;
    bubble.popdown();
    set_visible_child(button);
    left.emit();
}

void TimecodeField::complain(std::string const& text) {
    complaint.set_text(text);
    entry.select_region(0, -1);
    bubble.popup();
}

} // namespace workbench
