#include "Workbench/HostEditor/Clips.h"
#include "Workbench/HostEditor/PinButton.h"
#include "Workbench/HostEditor/WaitUntil.h"
#include "Workbench/HostEditor/WindowFixture.h"

#include <gtest/gtest.h>
#include <gtkmm.h>

#include <cmath>

namespace workbench {
namespace {

TEST_F(Window, MagnifiesTheTimelineAroundThePlayhead) {
    showFilm();
    auto& timeline = dynamic_cast<TimelineView&>(find("Timeline"));
    auto const isMagnified = [&](double times) {
        return waitUntil([&] { return std::abs(timeline.magnification() - times) < 1e-9; });
    };
    press("plus plus");
    EXPECT_TRUE(isMagnified(2.25));
    press("minus");
    EXPECT_TRUE(isMagnified(1.5));
    click("Zoom in");
    EXPECT_TRUE(isMagnified(2.25));
    click("Zoom out");
    EXPECT_TRUE(isMagnified(1.5));
    click("Show all");
    EXPECT_TRUE(isMagnified(1));
    press("plus f");
    EXPECT_TRUE(isMagnified(1));
    EXPECT_EQ(editor.target(), 0);
}

TEST_F(Window, ScrollsTheMagnifiedTimelineWithTheWheel) {
    showFilm();
    auto& timeline = dynamic_cast<TimelineView&>(find("Timeline"));
    auto const [x, y] = place(timeline, TimelineView::Margin, timeline.get_height() - 20.0);
    runCommand("xdotool mousemove " + std::to_string(x) + " " + std::to_string(y) +
               " keydown ctrl click 4 click 4 click 4 click 4 keyup ctrl");
    ASSERT_TRUE(waitUntil([&] { return timeline.magnification() > 2.4; }));
    auto& bar = dynamic_cast<Gtk::Scrollbar&>(find("Timeline position"));
    EXPECT_TRUE(bar.get_child_visible());
    EXPECT_EQ(bar.get_adjustment()->get_value(), 0);
    runCommand("xdotool click 5 click 5");
    ASSERT_TRUE(waitUntil([&] { return bar.get_adjustment()->get_value() == 160; }));
    // The frame below the pointer is the one that the scale has there.
    auto const room = timeline.get_width() - 2.0 * TimelineView::Margin;
    auto const frame = static_cast<std::int64_t>((160 + 100) * 120 / (room * timeline.magnification()));
    clickAt(x + 100, y);
    ASSERT_TRUE(waitFor(frame));
    press("Page_Up");
    ASSERT_TRUE(waitUntil([&] { return bar.get_adjustment()->get_value() == 0; }));
}

TEST_F(Window, KeepsThePlayheadInSight) {
    showFilm();
    auto& timeline = dynamic_cast<TimelineView&>(find("Timeline"));
    timeline.setMagnification(6);
    auto const adjustment = dynamic_cast<Gtk::Scrollbar&>(find("Timeline position")).get_adjustment();
    auto const isInSight = [&](std::int64_t frame) {
        auto const position = adjustment->get_upper() * static_cast<double>(frame) / 120;
        return position >= adjustment->get_value() &&
               position <= adjustment->get_value() + adjustment->get_page_size();
    };
    editor.seek(60);
    ASSERT_TRUE(waitFor(60));
    EXPECT_TRUE(isInSight(60));
    EXPECT_FALSE(isInSight(0));
    auto const before = adjustment->get_value();
    press("space");
    ASSERT_TRUE(waitUntil([&] {
        EXPECT_TRUE(isInSight(editor.target())) << editor.target();
        return adjustment->get_value() > before;
    }));
    press("space");
    ASSERT_TRUE(waitUntil([this] { return !editor.isPlaying(); }));
}

TEST_F(Window, MakesNoPinsOutOfSight) {
    showFilm();
    std::vector<Pin> pins;
    for (auto frame = 0; frame < 120; ++frame)
        pins.push_back({.id = {},
                        .start = frame * 1001 / 30000.0,
                        .text = std::to_string(frame),
                        .author = {},
                        .colour = {}});
    auto& timeline = dynamic_cast<TimelineView&>(find("Timeline"));
    timeline.setMagnification(6);
    window->showPins(pins, true);
    EXPECT_NE(workbench::find(*window, "Comment, 3"), nullptr);
    EXPECT_EQ(workbench::find(*window, "Comment, 60"), nullptr);
    timeline.scrollPages(3);
    EXPECT_EQ(workbench::find(*window, "Comment, 3"), nullptr);
    EXPECT_NE(workbench::find(*window, "Comment, 64"), nullptr);
}

TEST_F(Window, MovesThePlayheadToAClickOnTheTimeline) {
    showFilm();
    for (auto const frame : {60, 0, 119, 17}) {
        clickTimeline(frame, 120);
        ASSERT_TRUE(waitFor(frame)) << frame;
    }
}

TEST_F(Window, MovesThePlayheadToAPinThatIsClicked) {
    showFilm();
    auto const seconds = 40 * 1001 / 30000.0;
    window->showPins({{.id = "a", .start = seconds, .text = "Logo too small", .author = "Ana", .colour = {}}},
                     true);
    ASSERT_TRUE(waitUntil([this] { return find("Comment, Ana: Logo too small").get_width() > 0; }));
    auto& pin = find("Comment, Ana: Logo too small");
    EXPECT_EQ(pin.get_tooltip_text(), "Ana: Logo too small");
    EXPECT_EQ(pin.get_width(), 12);
    // At the rim of the pin another frame lies below the pointer; that one is not wanted.
    std::vector<std::int64_t> wanted;
    auto const watching = editor.signalTargetChanged().connect([&] { wanted.push_back(editor.target()); });
    auto const [x, y] = place(pin, 1, pin.get_height() / 2.0);
    clickAt(x, y);
    ASSERT_TRUE(waitFor(40));
    EXPECT_EQ(wanted, (std::vector<std::int64_t>{40}));
    // The next press is the timeline's again.
    clickTimeline(5, 120);
    ASSERT_TRUE(waitFor(5));
}

TEST(Pins, AreDrawnInTheirColourUnlessTheyHaveNone) {
    EXPECT_EQ(pinColour({.id = {}, .text = {}, .author = {}, .colour = "#3366ff"}, true),
              Gdk::RGBA{"#3366ff"});
    auto const house = pinColour({.id = {}, .text = {}, .author = {}, .colour = {}}, true);
    EXPECT_EQ(pinColour({.id = {}, .text = {}, .author = {}, .colour = "url(x)"}, true), house);
    EXPECT_EQ(pinColour({.id = {}, .text = {}, .author = {}, .colour = "#xyz"}, true), house);
    EXPECT_NE(pinColour({.id = {}, .text = {}, .author = {}, .colour = "#3366ff"}, false),
              Gdk::RGBA{"#3366ff"});
}

TEST(Pins, SayWhoSaidWhat) {
    EXPECT_EQ(pinText({.id = {}, .text = "Too\ndark", .author = "Ben", .colour = {}}), "Ben: Too dark");
    EXPECT_EQ(pinText({.id = {}, .text = "Too dark", .author = {}, .colour = {}}), "Too dark");
    EXPECT_EQ(pinText({.id = {}, .text = std::string(300, 'x'), .author = {}, .colour = {}}),
              std::string(160, 'x') + "…");
}

} // namespace
} // namespace workbench
