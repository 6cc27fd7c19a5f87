#include "Workbench/ContainerApp/Timeline.h"

#include "Workbench/ContainerApp/ExportSamples.h"
#include "Workbench/ContainerApp/OutputFile.h"

#include <gtest/gtest.h>

#include <limits>

namespace workbench {

namespace {

constexpr auto lastOfAll = (std::int64_t{1} << 31) - 3;

Comment reply(std::string const& id, std::string const& parent, std::string const& text) {
    auto made = commentAt(99, text);
    made.id = id;
    made.parentId = parent;
    return made;
}

TimelineMarker markerWith(double start, double duration, FrameRate rate) {
    auto content = ExportContent{.title = "", .count = FrameCount{rate}, .durationFrames = 0, .comments = {}};
    content.comments.push_back(commentAt(start, ""));
    content.comments[0].duration = duration;
    return timelineOf(content).markers.at(0);
}

std::vector<std::int64_t> framesOf(std::vector<TimelineMarker> const& markers) {
    auto frames = std::vector<std::int64_t>{};
    for (auto const& marker : markers)
        frames.push_back(marker.frame);
    return frames;
}

} // namespace

TEST(Timeline, FindsTheFramesOfTimesThatWereRoundedToTheEditorsTicks) {
    for (auto const& [name, count] : sampleRates())
        for (auto frame = std::int64_t{0}; frame < 20'000; ++frame) {
            auto const ticks = frame * count.rate.denominator * 600 / count.rate.numerator;
            ASSERT_EQ(frame, markerWith(static_cast<double>(ticks) / 600, 0, count.rate).frame) << name;
        }
}

TEST(Timeline, CountsTheFramesOfARange) {
    for (auto const& [name, count] : sampleRates())
        for (auto frame = std::int64_t{0}; frame < 2000; frame += 7)
            ASSERT_EQ(13,
                      markerWith(secondsAt(frame, count.rate), secondsAt(13, count.rate), count.rate).frames)
                << name << ' ' << frame;
    EXPECT_EQ(0, markerWith(1, 0, pal.rate).frames);
    EXPECT_EQ(1, markerWith(1, 0.001, pal.rate).frames);
}

TEST(Timeline, SortsMarkersByFrameAndKeepsTheOrderWithinOne) {
    auto const timeline = timelineOf(contentAt({30, 10, 20, 10}, pal));
    EXPECT_EQ((std::vector<std::int64_t>{10, 10, 20, 30}), framesOf(timeline.markers));
    EXPECT_EQ("Comment 2", timeline.markers[0].title);
    EXPECT_EQ("Comment 4", timeline.markers[1].title);
}

TEST(Timeline, HangsRepliesFromTheirComment) {
    auto content = contentAt({10}, pal);
    content.comments.push_back(reply("a", "1", "yes"));
    content.comments.push_back(reply("b", "a", "no"));
    content.comments.push_back(reply("c", "gone", "alone"));
    auto const timeline = timelineOf(content);
    ASSERT_EQ(2U, timeline.markers.size());
    EXPECT_EQ((std::vector<std::string>{"Comment 1", "yes", "no"}), timeline.markers[0].remarks);
    EXPECT_EQ((std::vector<std::string>{"alone"}), timeline.markers[1].remarks);
}

TEST(Timeline, ReachesBehindItsLastMarker) {
    EXPECT_EQ(1, timelineOf(contentAt({}, pal)).length);
    EXPECT_EQ(31, timelineOf(contentAt({30, 10}, pal)).length);
    auto content = contentAt({30, 10}, pal);
    content.durationFrames = 500;
    EXPECT_EQ(500, timelineOf(content).length);
    content.comments[1].duration = 100;
    EXPECT_EQ(2510, timelineOf(content).length);
}

TEST(Timeline, PutsTheMarkersOfOneFrameTogether) {
    auto content = contentAt({10, 20, 10}, pal);
    content.comments[2].duration = 1;
    content.comments[2].colour = "red";
    content.comments[0].resolved = true;
    content.comments[1].resolved = true;
    auto const markers = oneOnEachFrame(timelineOf(content).markers);
    ASSERT_EQ((std::vector<std::int64_t>{10, 20}), framesOf(markers));
    EXPECT_EQ("Comment 1 / Comment 3", markers[0].title);
    EXPECT_EQ("Comment 1 | Comment 3", joined(markers[0].remarks, " | "));
    EXPECT_EQ(25, markers[0].frames);
    EXPECT_EQ((MarkerColour{255, 0, 0}), markers[0].colour);
    EXPECT_FALSE(markers[0].resolved);
    EXPECT_TRUE(markers[1].resolved);
}

TEST(Timeline, ShowsAnyTextInOneLine) {
    for (auto const& [typed, seen] : hostileTexts())
        EXPECT_EQ(seen == "(no text)" ? "" : seen, oneLine(typed));
    EXPECT_EQ("a b", oneLine(std::string{"a\0b", 3}.replace(1, 1, "\n")));
}

TEST(Timeline, StaysBelowWhatOtherProgramsCount) {
    EXPECT_EQ(lastOfAll, markerWith(1e300, 0, pal.rate).frame);
    EXPECT_EQ(1, markerWith(1e300, 1e300, pal.rate).frames);
    EXPECT_EQ(lastOfAll + 1, markerWith(0, 1e300, {60000, 1001}).frames);
    auto content = contentAt({0}, {{25, 1}, std::numeric_limits<std::int64_t>::max(), false});
    content.durationFrames = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(lastOfAll + 1, timelineOf(content).length);
    EXPECT_EQ(lastOfAll, timelineOf(content).count.firstFrame);
}

TEST(Timeline, CanTellTheTimeOfItsLastFrameAtItsSlowestRate) {
    auto content = contentAt({}, {{1, 1'000'000}, 0, false});
    content.durationFrames = std::numeric_limits<std::int64_t>::max();
    auto const timeline = timelineOf(content);
    EXPECT_EQ("596523234444:26:40.000", clockTime(lastOfAll - 1, timeline.count.rate));
    EXPECT_THROW(std::ignore = timelineOf(contentAt({}, {{1, 1'000'001}, 0, false})), OutputError);
}

TEST(Timeline, RefusesARateThatCannotBeCountedWith) {
    try {
        std::ignore = timelineOf(contentAt({}, {{std::numeric_limits<std::int64_t>::max(), 2}, 0, false}));
        FAIL();
    } catch (OutputError const& error) {
        EXPECT_STREQ(
            "a rate of 9223372036854775807/2 frames in a second cannot be exported: open the sequence in "
            "the editor again",
            error.what());
    }
    EXPECT_EQ((FrameRate{24000, 1001}), timelineOf(contentAt({}, {{48000, 2002}, 0, false})).count.rate);
}

} // namespace workbench
