// A small window in the corner of the screen that files can be dragged out of: those whose addresses are
// given. It says on standard output how the drag goes.

#include <gdkmm/contentprovider.h>
#include <gdkmm/drag.h>
#include <glibmm/bytes.h>
#include <gtkmm/application.h>
#include <gtkmm/dragsource.h>
#include <gtkmm/eventcontrollermotion.h>
#include <gtkmm/window.h>

#include <cstdio>
#include <string>
#include <utility>

namespace {

void say(char const* what) {
    std::printf("%s\n", what);
    std::fflush(stdout);
}

class Source final : public Gtk::Window {
public:
    explicit Source(std::string theList)
        : list{std::move(theList)} {
        set_decorated(false);
        set_default_size(120, 80);
        auto const motion = Gtk::EventControllerMotion::create();
        motion->signal_enter().connect([](double, double) { say("entered"); });
        add_controller(motion);
        auto const drag = Gtk::DragSource::create();
        drag->set_actions(Gdk::DragAction::COPY);
        drag->signal_prepare().connect([this](double, double) { return offer(); }, false);
        drag->signal_drag_begin().connect([](Glib::RefPtr<Gdk::Drag> const& begun) { follow(begun); });
        drag->signal_drag_cancel().connect(
            [](Glib::RefPtr<Gdk::Drag> const&, Gdk::DragCancelReason) {
                say("refused");
                return false;
            },
            false);
        drag->signal_drag_end().connect([](Glib::RefPtr<Gdk::Drag> const&, bool) { say("ended"); });
        add_controller(drag);
    }

private:
    // The same bytes that a file manager offers.
    Glib::RefPtr<Gdk::ContentProvider> offer() const {
        return Gdk::ContentProvider::create("text/uri-list", Glib::Bytes::create(list.data(), list.size()));
    }

    static void follow(Glib::RefPtr<Gdk::Drag> const& drag) {
        say("begun");
        drag->property_selected_action().signal_changed().connect([raw = drag.get()] {
            say(raw->get_selected_action() == Gdk::DragAction::COPY ? "welcome" : "not welcome");
        });
    }

    std::string const list;
};

} // namespace

int main(int count, char** arguments) {
    auto list = std::string{};
    for (auto index = 1; index < count; ++index)
        list += std::string{arguments[index]} + "\r\n";
    auto const application = Gtk::Application::create({}, Gio::Application::Flags::NON_UNIQUE);
    return application->make_window_and_run<Source>(0, nullptr, list);
}
