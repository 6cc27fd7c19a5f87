#include "Workbench/HostEditor/Clips.h"
#include "Workbench/HostEditor/WaitUntil.h"
#include "Workbench/HostEditor/WindowFixture.h"

#include <gtest/gtest.h>
#include <gtkmm.h>

#include <algorithm>
#include <memory>

namespace workbench {
namespace {

TEST_F(Window, PlaysAndPausesWithSpaceAndButton) {
    showFilm();
    press("space");
    ASSERT_TRUE(waitUntil([this] { return editor.isPlaying() && editor.position() > 3; }));
    press("space");
    ASSERT_TRUE(waitUntil([this] { return !editor.isPlaying(); }));
    click("Play");
    ASSERT_TRUE(waitUntil([this] { return editor.isPlaying(); }));
    EXPECT_TRUE(dynamic_cast<Gtk::ToggleButton&>(find("Play")).get_active());
    click("Play");
    ASSERT_TRUE(waitUntil([this] { return !editor.isPlaying(); }));
    EXPECT_FALSE(dynamic_cast<Gtk::ToggleButton&>(find("Play")).get_active());
}

TEST_F(Window, StepsAndJumpsWithKeys) {
    showFilm();
    press("Right Right Right");
    ASSERT_TRUE(waitFor(3));
    press("Left");
    ASSERT_TRUE(waitFor(2));
    press("End");
    ASSERT_TRUE(waitFor(119));
    press("shift+Left");
    ASSERT_TRUE(waitFor(90));
    press("Home");
    ASSERT_TRUE(waitFor(0));
}

TEST_F(Window, StepsAndJumpsWithButtons) {
    showFilm();
    click("Next frame");
    ASSERT_TRUE(waitFor(1));
    click("Last frame");
    ASSERT_TRUE(waitFor(119));
    click("Previous frame");
    ASSERT_TRUE(waitFor(118));
    click("First frame");
    ASSERT_TRUE(waitFor(0));
}

TEST_F(Window, PlaysFasterAndBackwardsWithTheShuttleKeys) {
    showFilm();
    auto const speedReads = [this](double speed, std::string const& text) {
        return waitUntil([&] {
            return editor.speed() == speed &&
                   dynamic_cast<Gtk::Label&>(find("Speed")).get_text().raw() == text;
        });
    };
    press("End");
    ASSERT_TRUE(waitFor(119));
    press("j");
    EXPECT_TRUE(speedReads(-1, "−1×"));
    press("j");
    EXPECT_TRUE(speedReads(-2, "−2×"));
    ASSERT_TRUE(waitUntil([this] { return editor.position() < 110; }));
    press("l");
    EXPECT_TRUE(speedReads(1, ""));
    press("k");
    EXPECT_TRUE(speedReads(0, ""));
    EXPECT_FALSE(dynamic_cast<Gtk::ToggleButton&>(find("Play")).get_active());
}

TEST_F(Window, StepsWithTheShuttleKeysWhilePauseIsHeld) {
    showFilm();
    runCommand("xdotool keydown k key l l l keyup k");
    ASSERT_TRUE(waitFor(3));
    runCommand("xdotool keydown k key j keyup k");
    ASSERT_TRUE(waitFor(2));
    EXPECT_FALSE(editor.isPlaying());
}

TEST_F(Window, GoesFromCommentToComment) {
    showFilm();
    EXPECT_FALSE(find("Next comment").is_sensitive());
    std::vector<Pin> pins;
    for (auto const frame : {20, 40, 80})
        pins.push_back({.id = {}, .start = frame * 1001 / 30000.0, .text = "x", .author = {}, .colour = {}});
    window->showPins(pins, true);
    press("Down Down");
    ASSERT_TRUE(waitFor(40));
    press("Up");
    ASSERT_TRUE(waitFor(20));
    press("Up");
    click("Next comment");
    ASSERT_TRUE(waitFor(40));
    click("Previous comment");
    ASSERT_TRUE(waitFor(20));
}

TEST_F(Window, KeepsTheKeysAfterAButtonWasClicked) {
    showFilm();
    click("Next frame");
    ASSERT_TRUE(waitFor(1));
    press("space");
    ASSERT_TRUE(waitUntil([this] { return editor.isPlaying(); }));
}

TEST_F(Window, ShowsTimecodeAndFrame) {
    showFilm();
    editor.seek(100);
    ASSERT_TRUE(waitFor(100));
    EXPECT_EQ(dynamic_cast<Gtk::Label&>(find("Timecode")).get_text(), "00:00:03;10");
    EXPECT_EQ(dynamic_cast<Gtk::Label&>(find("Frame")).get_text(), "frame 100");
    std::unique_ptr<char, decltype(&g_free)> const mismatch{
        gtk_test_accessible_check_property(GTK_ACCESSIBLE(find("Timeline").gobj()),
                                           GTK_ACCESSIBLE_PROPERTY_VALUE_TEXT, "00:00:03;10", nullptr),
        &g_free};
    EXPECT_EQ(mismatch.get(), nullptr);
}

TEST_F(Window, GoesToATypedTimecode) {
    showFilm();
    click("Enter a timecode");
    ASSERT_TRUE(waitUntil([this] { return isTyping(); }));
    press("2 semicolon 0 5 Return");
    ASSERT_TRUE(waitFor(65));
    EXPECT_FALSE(isTyping());
    press("1 0 0 Return");
    ASSERT_TRUE(waitFor(30));
    press("t minus 1 Return");
    ASSERT_TRUE(waitFor(29));
    press("Right");
    ASSERT_TRUE(waitFor(30));
}

TEST_F(Window, SaysWhatIsWrongWithATimecodeAndMovesNothing) {
    showFilm();
    std::vector<std::int64_t> wanted;
    auto const watching = editor.signalTargetChanged().connect([&] { wanted.push_back(editor.target()); });
    press("9 9 9 Return");
    auto const says = [this](std::string const& text) {
        return waitUntil([&] {
            auto const all = texts(find("Go to timecode"));
            return std::ranges::find(all, text) != all.end();
        });
    };
    EXPECT_TRUE(says("99 frames: there are 0 to 29"));
    press("9 0 0 Return");
    EXPECT_TRUE(says("the last frame is 00:00:03;29"));
    EXPECT_TRUE(isTyping());
    press("Escape");
    ASSERT_TRUE(waitUntil([this] { return !isTyping(); }));
    EXPECT_TRUE(wanted.empty());
    press("Right");
    ASSERT_TRUE(waitFor(1));
}

TEST_F(Window, LeavesATimecodeThatIsNotFinished) {
    showFilm();
    press("5");
    ASSERT_TRUE(waitUntil([this] { return isTyping(); }));
    clickTimeline(17, 120);
    ASSERT_TRUE(waitFor(17));
    EXPECT_FALSE(isTyping());
}

TEST_F(Window, MovesNothingWhileTheNumbersRun) {
    showFilm();
    auto const places = [this] {
        std::vector<int> all;
        for (auto const* const name : {"Timecode", "Frame", "Play", "Next frame", "Timeline", "Picture"}) {
            auto const [x, y] = place(find(name), 0, 0);
            all.insert(all.end(), {x, y, find(name).get_width(), find(name).get_height()});
        }
        return all;
    };
    auto const isDrawnAnew = [this] {
        auto const clock = window->get_frame_clock();
        window->queue_draw();
        return waitUntil(
            [&, last = clock->get_frame_counter()] { return clock->get_frame_counter() > last; });
    };
    auto const before = places();
    for (auto const frame : {1, 9, 10, 88, 99, 100, 111, 119}) {
        editor.seek(frame);
        ASSERT_TRUE(waitFor(frame));
        ASSERT_TRUE(isDrawnAnew());
        EXPECT_EQ(places(), before) << frame;
    }
}

} // namespace
} // namespace workbench
