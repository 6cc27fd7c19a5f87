#include "Workbench/HostEditor/WindowFixture.h"

#include "Workbench/HostEditor/Clips.h"
#include "Workbench/HostEditor/Style.h"
#include "Workbench/HostEditor/WaitUntil.h"

#include <gtkmm.h>
#include <gtkmm/init.h>

#include <cmath>
#include <cstdlib>

namespace workbench {

namespace {

bool hasName(Gtk::Widget& widget, std::string const& name) {
    std::unique_ptr<char, decltype(&g_free)> const mismatch{
        gtk_test_accessible_check_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                           name.c_str(), nullptr),
        &g_free};
    return !mismatch;
}

} // namespace

void press(std::string const& keys) {
    runCommand("xdotool key " + keys);
}

void clickAt(int x, int y) {
    runCommand("xdotool mousemove " + std::to_string(x) + " " + std::to_string(y) + " click 1");
}

Gtk::Widget* find(Gtk::Widget& from, std::string const& name) {
    if (hasName(from, name))
        return &from;
    for (auto* child = from.get_first_child(); child; child = child->get_next_sibling())
        if (auto* const found = find(*child, name))
            return found;
    return nullptr;
}

std::vector<std::string> texts(Gtk::Widget& from) {
    std::vector<std::string> all;
    if (auto const* const label = dynamic_cast<Gtk::Label*>(&from))
        all.push_back(label->get_text());
    for (auto* child = from.get_first_child(); child; child = child->get_next_sibling())
        for (auto& text : texts(*child))
            all.push_back(std::move(text));
    return all;
}

void Window::SetUpTestSuite() {
    setenv("GTK_A11Y", "test", 1);
    setenv("GSETTINGS_BACKEND", "memory", 1); // what the file dialog keeps
    ASSERT_TRUE(gtk_init_check());
    Gtk::init_gtkmm_internals();
    Glib::set_prgname("editor_window_test");
    Glib::set_application_name("Editor window test");
    g_log_set_always_fatal(static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING));
    installStyle();
    engine = std::make_unique<MediaEngine>();
    media = std::make_unique<TemporaryFolder>();
    makeClip(media->path / "first.mp4", {30000, 1001}, 120);
    makeClip(media->path / "second.mp4", {25, 1}, 50);
}

void Window::TearDownTestSuite() {
    media.reset();
    engine.reset();
}

void Window::SetUp() {
    editor.signalPicture().connect([this](Picture const&) { ++pictures; });
}

void Window::present(WindowState const& state) {
    window.emplace(editor, state);
    window->present();
    ASSERT_TRUE(waitUntil([this] { return window->is_active() && find("Timeline").get_width() > 100; }));
}

void Window::show(std::vector<std::string> const& names) {
    std::vector<std::string> files;
    for (auto const& name : names)
        files.push_back((media->path / name).string());
    editor.open(files);
    present({});
}

void Window::showFilm() {
    show({"first.mp4"});
    ASSERT_TRUE(waitUntil([this] { return pictures > 0; }));
}

Gtk::Widget& Window::find(std::string const& name) {
    auto* const widget = workbench::find(*window, name);
    EXPECT_NE(widget, nullptr) << name;
    return widget ? *widget : *window;
}

std::pair<int, int> Window::place(Gtk::Widget& widget, double x, double y) {
    double left = 0;
    double top = 0;
    double windowLeft = 0;
    double windowTop = 0;
    widget.translate_coordinates(*window, x, y, left, top);
    // Without a window manager the window begins at the corner of the screen.
    gtk_native_get_surface_transform(GTK_NATIVE(window->gobj()), &windowLeft, &windowTop);
    return {static_cast<int>(std::lround(left + windowLeft)), static_cast<int>(std::lround(top + windowTop))};
}

void Window::click(std::string const& name) {
    auto& widget = find(name);
    auto const [x, y] = place(widget, widget.get_width() / 2.0, widget.get_height() / 2.0);
    clickAt(x, y);
}

void Window::clickTimeline(std::int64_t frame, std::int64_t length) {
    auto& timeline = find("Timeline");
    auto const room = timeline.get_width() - 2.0 * TimelineView::Margin;
    auto const x =
        TimelineView::Margin + room * (static_cast<double>(frame) + 0.5) / static_cast<double>(length);
    auto const [left, top] = place(timeline, x, timeline.get_height() - 20.0);
    clickAt(left, top);
}

bool Window::waitFor(std::int64_t frame) {
    return waitUntil([this, frame] { return editor.position() == frame; });
}

} // namespace workbench
