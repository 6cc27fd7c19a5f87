#include "Workbench/HostEditor/Player.h"

#include "Workbench/HostEditor/Clips.h"
#include "Workbench/HostEditor/MediaFile.h"
#include "Workbench/HostEditor/StartEngine.h"
#include "Workbench/HostEditor/TemporaryFolder.h"
#include "Workbench/HostEditor/WaitUntil.h"

#include <glibmm.h>
#include <gtest/gtest.h>
#include <mlt++/Mlt.h>

#include <array>
#include <atomic>
#include <type_traits>

namespace workbench {
namespace {

static_assert(!std::is_copy_constructible_v<Player> && !std::is_move_constructible_v<Player>);
static_assert(!std::is_copy_constructible_v<Playback> && !std::is_move_constructible_v<Playback>);

struct Seen {
    std::int64_t frame;
    std::optional<std::int64_t> number; // on the picture

    friend bool operator==(Seen const&, Seen const&) = default;
};

// Without a rate: what is shown of any file.
class PlayerOnAnything : public testing::Test {
protected:
    // Blue, green and red in the middle of the first picture.
    std::array<int, 3> colourOf(std::string const& name, std::string const& arguments) {
        startEngine();
        TemporaryFolder const folder;
        auto result = openMediaFile(makeMedia(folder.path / name, arguments));
        auto const sequence = std::move(std::get<OpenedFile>(result).sequences.at(0));
        Player player;
        Picture picture;
        player.signalShown().connect([&](ShownFrame const& shown) { picture = shown.picture; });
        EXPECT_TRUE(player.open(*sequence));
        EXPECT_TRUE(waitUntil([&] { return static_cast<bool>(picture); }));
        player.close();
        gsize size = 0;
        auto const* const bytes = static_cast<std::uint8_t const*>(picture.pixels->get_data(size));
        auto const* const middle = bytes + size / 2 + std::ptrdiff_t(picture.size.width) * 2;
        return {middle[0], middle[1], middle[2]};
    }

    static void expectOrange(std::array<int, 3> const& colour) {
        EXPECT_NEAR(colour[0], 0x20, 6);
        EXPECT_NEAR(colour[1], 0x80, 6);
        EXPECT_NEAR(colour[2], 0xe0, 6);
    }
};

TEST_F(PlayerOnAnything, KeepsTheColoursOfHighDefinition) {
    expectOrange(colourOf(
        "hd.mp4", "-f lavfi -i color=0xe08020:s=1280x720:r=25 -frames:v 3 "
                  "-vf scale=out_color_matrix=bt709 -colorspace bt709 -c:v libx264 -pix_fmt yuv420p"));
}

TEST_F(PlayerOnAnything, KeepsTheColoursOfStandardDefinition) {
    expectOrange(colourOf("sd.mp4", "-f lavfi -i color=0xe08020:s=720x576:r=25 -frames:v 3 "
                                    "-vf scale=out_color_matrix=bt601 -c:v libx264 -pix_fmt yuv420p"));
}

TEST_F(PlayerOnAnything, KeepsTheColoursOfFullRange) {
    expectOrange(colourOf("full.mp4", "-f lavfi -i color=0xe08020:s=1280x720:r=25 -frames:v 3 "
                                      "-vf scale=out_color_matrix=bt709:out_range=full -colorspace bt709 "
                                      "-color_range pc -c:v libx264 -pix_fmt yuv420p"));
}

TEST_F(PlayerOnAnything, KeepsTheColoursOfAStill) {
    expectOrange(colourOf("still.png", "-f lavfi -i color=0xe08020:s=640x360 -frames:v 1"));
    expectOrange(colourOf("still.jpg", "-f lavfi -i color=0xe08020:s=640x360 -frames:v 1 -q:v 1"));
}

class PlayerOnFilm : public testing::TestWithParam<FrameRate> {
protected:
    static constexpr int Frames = 90;

    static void SetUpTestSuite() {
        startEngine();
        media = std::make_unique<TemporaryFolder>();
    }

    static void TearDownTestSuite() { media.reset(); }

    void SetUp() override {
        sequence = open("film", GetParam());
        player.signalShown().connect([this](ShownFrame const& shown) {
            seen.push_back({shown.frame, numberOn(shown.picture)});
            sizes.push_back(shown.picture.size);
        });
        ASSERT_TRUE(player.open(*sequence));
        ASSERT_TRUE(waitUntil([this] { return !seen.empty(); }));
    }

    static std::unique_ptr<Sequence> open(std::string const& name, FrameRate rate) {
        auto const file = media->path / (name + std::to_string(rate.numerator) + ".mp4");
        if (!std::filesystem::exists(file))
            makeClip(file, rate, Frames);
        auto result = openMediaFile(file);
        return std::move(std::get<OpenedFile>(result).sequences.at(0));
    }

    bool waitFor(std::int64_t frame) {
        return waitUntil([this, frame] { return !seen.empty() && seen.back().frame == frame; });
    }

    static inline std::unique_ptr<TemporaryFolder> media;
    std::unique_ptr<Sequence> sequence;
    Player player;
    std::vector<Seen> seen;
    std::vector<PixelSize> sizes;
};

TEST_P(PlayerOnFilm, ShowsTheFirstFrameAndWaits) {
    EXPECT_EQ(seen.front(), (Seen{0, 0}));
    EXPECT_FALSE(player.isPlaying());
    EXPECT_EQ(player.position(), 0);
}

TEST_P(PlayerOnFilm, ShowsJustTheFrameThatItIsSentTo) {
    for (auto const frame : {47, 48, 49, 1, 89, 0, 50, 88, 13}) {
        player.seek(frame);
        EXPECT_EQ(player.target(), frame);
        ASSERT_TRUE(waitFor(frame)) << frame;
        EXPECT_EQ(seen.back().number, frame);
        EXPECT_EQ(player.position(), frame);
    }
}

TEST_P(PlayerOnFilm, NeverShowsAnotherPictureThanItSays) {
    player.play();
    ASSERT_TRUE(waitUntil([this] { return player.position() >= 20; }));
    player.seek(60);
    ASSERT_TRUE(waitUntil([this] { return player.position() >= 65; }));
    player.pause();
    for (auto const& each : seen)
        EXPECT_EQ(each.number, each.frame);
}

TEST_P(PlayerOnFilm, StaysWhereItIsPaused) {
    player.play();
    ASSERT_TRUE(waitUntil([this] { return player.position() >= 10; }));
    auto const before = player.position();
    player.pause();
    EXPECT_FALSE(player.isPlaying());
    auto const count = seen.size();
    ASSERT_TRUE(waitUntil([&] { return seen.size() > count; }));
    // What the engine had read ahead would come within this time.
    EXPECT_FALSE(waitUntil([&] { return player.position() != before; }, 700));
    EXPECT_EQ(seen.back(), (Seen{before, before}));
}

TEST_P(PlayerOnFilm, PlaysOnFromWhereItWasPaused) {
    player.seek(30);
    ASSERT_TRUE(waitFor(30));
    auto const first = seen.size();
    player.play();
    ASSERT_TRUE(waitUntil([this] { return player.position() >= 35; }));
    EXPECT_GE(seen[first].frame, 30);
    EXPECT_LE(seen[first].frame, 33);
}

TEST_P(PlayerOnFilm, ShowsFramesOneAfterTheOtherThatComeTogether) {
    std::vector<std::int64_t> times;
    player.signalShown().connect([&](ShownFrame const&) { times.push_back(g_get_monotonic_time()); });
    player.play();
    ASSERT_TRUE(waitUntil([this] { return !player.isPlaying(); }));
    auto const halfAFrame = std::int64_t{500'000} * GetParam().denominator / GetParam().numerator;
    auto close = 0;
    for (std::size_t index = 1; index < times.size(); ++index)
        close += times[index] - times[index - 1] < halfAFrame ? 1 : 0;
    // A busy machine may keep this test from its clock now and then.
    EXPECT_LE(close, 9) << "of " << times.size();
}

TEST_P(PlayerOnFilm, StopsOnTheLastFrame) {
    player.seek(Frames - 12);
    ASSERT_TRUE(waitFor(Frames - 12));
    player.play();
    ASSERT_TRUE(waitUntil([this] { return !player.isPlaying(); }));
    ASSERT_TRUE(waitFor(Frames - 1));
    EXPECT_EQ(seen.back().number, Frames - 1);
}

TEST_P(PlayerOnFilm, BeginsAnewAfterTheEnd) {
    player.seek(Frames - 1);
    ASSERT_TRUE(waitFor(Frames - 1));
    player.play();
    EXPECT_TRUE(player.isPlaying());
    ASSERT_TRUE(waitUntil([this] { return player.position() >= 5 && player.position() < 40; }));
    EXPECT_TRUE(player.isPlaying());
}

TEST_P(PlayerOnFilm, ReachesTheLastOfManyJumps) {
    for (int frame = 1; frame < 80; ++frame)
        player.seek(frame);
    EXPECT_EQ(player.target(), 79);
    ASSERT_TRUE(waitFor(79));
    EXPECT_EQ(player.position(), 79);
    // The first jump was under way; all but the last of the others were left out.
    EXPECT_LE(seen.size(), 4U);
}

TEST_P(PlayerOnFilm, JumpsWhilePlayingWithoutGoingBack) {
    player.play();
    ASSERT_TRUE(waitUntil([this] { return player.position() >= 5; }));
    player.seek(40);
    auto const first = seen.size();
    ASSERT_TRUE(waitUntil([this] { return player.position() >= 45; }));
    for (auto index = first; index < seen.size(); ++index)
        EXPECT_GE(seen[index].frame, 40);
}

TEST_P(PlayerOnFilm, ClampsJumpsToTheFilm) {
    player.seek(100'000);
    ASSERT_TRUE(waitFor(Frames - 1));
    player.seek(-5);
    ASSERT_TRUE(waitFor(0));
}

TEST_P(PlayerOnFilm, MakesPicturesForTheRoomThatThereIs) {
    player.setArea({200, 200});
    ASSERT_TRUE(waitUntil([this] { return sizes.back().width == 200; }));
    EXPECT_EQ(sizes.back(), (PixelSize{200, 112}));
    EXPECT_EQ(seen.back(), (Seen{0, 0}));
}

TEST_P(PlayerOnFilm, KeepsThePlaceOfEachSequence) {
    player.seek(33);
    ASSERT_TRUE(waitFor(33));
    auto const other = open("other", {25, 1});
    ASSERT_TRUE(player.open(*other));
    ASSERT_TRUE(waitFor(0));
    player.seek(7);
    ASSERT_TRUE(waitFor(7));
    ASSERT_TRUE(player.open(*sequence));
    EXPECT_EQ(player.position(), 33);
    ASSERT_TRUE(waitFor(33));
    EXPECT_EQ(seen.back().number, 33);
    EXPECT_EQ(other->position(), 7);
    player.close();
}

// An engine that is stopped while it runs reads freed memory, once in many times.
TEST_P(PlayerOnFilm, BringsTheEngineToRestBeforeItIsStopped) {
    player.close();
    std::atomic<int> shown = 0;
    {
        Playback playback{*sequence, [&](ShownFrame const&) { ++shown; }};
        ASSERT_TRUE(playback.start());
        playback.setSpeed(1);
        ASSERT_TRUE(waitUntil([&] { return shown >= 3; }));
        shown = 0;
    }
    EXPECT_GT(shown, 0);
    EXPECT_EQ(sequence->producer().get_speed(), 0);
}

TEST_P(PlayerOnFilm, SurvivesBeingClosedWhileItPlays) {
    player.play();
    ASSERT_TRUE(waitUntil([this] { return player.position() >= 3; }));
    player.close();
    EXPECT_FALSE(player.isPlaying());
    auto const count = seen.size();
    EXPECT_FALSE(waitUntil([&] { return seen.size() > count; }, 200));
    player.play();
    player.seek(5);
    player.pause();
    EXPECT_FALSE(player.isPlaying());
}

class PlayerAtSpeeds : public PlayerOnFilm {
protected:
    // The engine is left standing still.
    void TearDown() override {
        player.pause();
        auto const elsewhere = player.position() == 5 ? 6 : 5;
        player.seek(elsewhere);
        EXPECT_TRUE(waitFor(elsewhere));
    }
};

TEST_P(PlayerAtSpeeds, PlaysBackwardsPictureByPicture) {
    player.seek(60);
    ASSERT_TRUE(waitFor(60));
    auto const first = seen.size();
    player.play(-1);
    EXPECT_EQ(player.speed(), -1);
    ASSERT_TRUE(waitUntil([this] { return player.position() <= 40; }));
    player.pause();
    for (auto index = first; index < seen.size(); ++index) {
        EXPECT_EQ(seen[index].number, seen[index].frame);
        EXPECT_LE(seen[index].frame, seen[index - 1].frame);
    }
    EXPECT_GT(seen.size(), first + 5);
}

TEST_P(PlayerAtSpeeds, StopsOnTheFirstFrameBackwards) {
    player.seek(9);
    ASSERT_TRUE(waitFor(9));
    player.play(-4);
    ASSERT_TRUE(waitUntil([this] { return !player.isPlaying(); }));
    ASSERT_TRUE(waitFor(0));
    EXPECT_EQ(seen.back().number, 0);
    player.play(-1);
    EXPECT_FALSE(player.isPlaying());
}

TEST_P(PlayerAtSpeeds, LeavesFramesOutWhenItPlaysFast) {
    player.play(4);
    ASSERT_TRUE(waitUntil([this] { return player.position() >= 60; }));
    EXPECT_EQ(player.speed(), 4);
    for (auto const& each : seen)
        EXPECT_EQ(each.frame % 4, 0) << each.frame;
    ASSERT_TRUE(waitUntil([this] { return !player.isPlaying(); }));
    ASSERT_TRUE(waitFor(Frames - 1));
}

TEST_P(PlayerAtSpeeds, TurnsWhereThePictureIs) {
    player.play();
    ASSERT_TRUE(waitUntil([this] { return player.position() >= 30; }));
    auto const turning = player.position();
    auto const first = seen.size();
    player.play(-1);
    ASSERT_TRUE(waitUntil([this] { return player.position() <= 20; }));
    for (auto index = first; index < seen.size(); ++index)
        EXPECT_LE(seen[index].frame, turning);
    player.play(1);
    auto const lowest = player.position();
    auto const second = seen.size();
    ASSERT_TRUE(waitUntil([this] { return player.position() >= 35; }));
    for (auto index = second; index < seen.size(); ++index)
        EXPECT_GE(seen[index].frame, lowest);
}

TEST_P(PlayerAtSpeeds, TellsEachChangeOfSpeed) {
    std::vector<double> speeds;
    player.signalPlayingChanged().connect([&] { speeds.push_back(player.speed()); });
    for (auto const speed : {1.0, 2.0, 2.0, -1.0})
        player.play(speed);
    // Backwards there is nowhere to go from the first frame.
    ASSERT_TRUE(waitUntil([this] { return seen.size() > 3; }));
    player.pause();
    EXPECT_EQ(speeds, (std::vector<double>{1, 2, 0}));
}

INSTANTIATE_TEST_SUITE_P(AtAllRates, PlayerOnFilm,
                         testing::Values(FrameRate{24000, 1001}, FrameRate{25, 1}, FrameRate{30000, 1001},
                                         FrameRate{60000, 1001}),
                         [](auto const& rate) { return std::to_string(rate.param.numerator); });

// What the direction changes has nothing to do with the rate.
INSTANTIATE_TEST_SUITE_P(AtOneRate, PlayerAtSpeeds, testing::Values(FrameRate{30000, 1001}),
                         [](auto const& rate) { return std::to_string(rate.param.numerator); });

} // namespace
} // namespace workbench
