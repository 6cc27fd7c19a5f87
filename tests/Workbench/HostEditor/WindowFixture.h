#pragma once

#include "Workbench/HostEditor/Editor.h"
#include "Workbench/HostEditor/EditorWindow.h"
#include "Workbench/HostEditor/Journal.h"
#include "Workbench/HostEditor/MediaEngine.h"
#include "Workbench/HostEditor/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace workbench {

// The user's hands: real keys and a real pointer, through the display.
void press(std::string const& keys);
void clickAt(int x, int y);

// The widget below this one, or itself, that screen readers know by the name.
[[nodiscard]] Gtk::Widget* find(Gtk::Widget& from, std::string const& name);

// What the labels in a widget say, from the first to the last.
[[nodiscard]] std::vector<std::string> texts(Gtk::Widget& from);

// The editor's window over two films, first.mp4 (120 frames at 29.97) and second.mp4 (50 at 25), on a display
// of its own without a window manager.
class Window : public testing::Test {
protected:
    static void SetUpTestSuite();
    static void TearDownTestSuite();
    void SetUp() override;

    // Returns when keys reach the window.
    void show(std::vector<std::string> const& names);
    void present(WindowState const& state);

    // The first film, when its picture is there.
    void showFilm();

    // Fails the test where nothing bears the name.
    [[nodiscard]] Gtk::Widget& find(std::string const& name);

    // A point of a widget on the screen.
    [[nodiscard]] std::pair<int, int> place(Gtk::Widget& widget, double x, double y);

    void click(std::string const& name);
    void clickTimeline(std::int64_t frame, std::int64_t length);

    [[nodiscard]] bool isTyping() { return find("Go to timecode").get_mapped(); }

    [[nodiscard]] bool waitFor(std::int64_t frame);

    static inline std::unique_ptr<MediaEngine> engine;
    static inline std::unique_ptr<TemporaryFolder> media;
    Journal journal;
    Editor editor{journal};
    int pictures = 0;
    std::optional<EditorWindow> window;
};

} // namespace workbench
