#include "Workbench/HostEditor/Picture.h"

#include "Workbench/HostEditor/PictureConverter.h"

#include <glibmm.h>
#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace workbench {
namespace {

constexpr double Wide = 16.0 / 9;

// One colour all over, in the engine's layout.
std::vector<std::uint8_t> evenImage(PixelSize size, std::array<std::uint8_t, 3> const& colour) {
    auto const luma = std::size_t(size.width) * std::size_t(size.height);
    std::vector<std::uint8_t> planes(luma, colour[0]);
    planes.insert(planes.end(), luma / 4, colour[1]);
    planes.insert(planes.end(), luma / 4, colour[2]);
    return planes;
}

std::array<int, 4> middle(Picture const& picture) {
    gsize size = 0;
    auto const* const bytes = static_cast<std::uint8_t const*>(picture.pixels->get_data(size));
    auto const [width, height] = picture.size;
    auto const* const pixel = bytes + (std::ptrdiff_t(height) / 2 * width + width / 2) * 4;
    return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

void expectNear(std::array<int, 4> const& pixel, std::array<int, 4> const& expected) {
    for (std::size_t channel = 0; channel < pixel.size(); ++channel)
        EXPECT_NEAR(pixel[channel], expected[channel], 3) << "channel " << channel;
}

TEST(Picture, FitsIntoItsArea) {
    EXPECT_EQ(fitted(Wide, {1600, 1000}), (PixelSize{1600, 900}));
    EXPECT_EQ(fitted(Wide, {1600, 450}), (PixelSize{800, 450}));
    EXPECT_EQ(fitted(0.5, {300, 300}), (PixelSize{150, 300}));
}

TEST(Picture, IsNotMadeLargerThanItsLimit) {
    EXPECT_EQ(previewSize(Wide, {1920, 1080}, 540), (PixelSize{960, 540}));
    EXPECT_EQ(previewSize(Wide, {640, 1080}, 540), (PixelSize{640, 360}));
    EXPECT_EQ(previewSize(Wide, {1, 1}, 540), (PixelSize{4, 2}));
}

TEST(Picture, IsSmallerWhereFramesAreMany) {
    EXPECT_EQ(playingHeightLimit({25, 1}), 540);
    EXPECT_EQ(playingHeightLimit({30, 1}), 540);
    EXPECT_EQ(playingHeightLimit({50, 1}), 360);
    EXPECT_EQ(playingHeightLimit({60000, 1001}), 360);
}

TEST(PictureConverter, KeepsTheColoursOfHighDefinition) {
    Glib::init();
    PixelSize const size{64, 36};
    auto const planes = evenImage(size, {63, 102, 240}); // pure red after the standard for it
    PictureConverter converter;
    auto const picture = converter.convert({planes.data(), size, 709, false}, {32, 18}, Wide);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture.size, (PixelSize{32, 18}));
    expectNear(middle(picture), {0, 0, 255, 255});
}

TEST(PictureConverter, KeepsTheColoursOfStandardDefinition) {
    Glib::init();
    PixelSize const size{64, 36};
    auto const planes = evenImage(size, {81, 90, 240});
    PictureConverter converter;
    expectNear(middle(converter.convert({planes.data(), size, 601, false}, {32, 18}, Wide)),
               {0, 0, 255, 255});
}

TEST(PictureConverter, KnowsFullRangeFromLimited) {
    Glib::init();
    PixelSize const size{64, 36};
    auto const planes = evenImage(size, {235, 128, 128});
    PictureConverter converter;
    expectNear(middle(converter.convert({planes.data(), size, 709, false}, size, Wide)),
               {255, 255, 255, 255});
    expectNear(middle(converter.convert({planes.data(), size, 709, true}, size, Wide)), {235, 235, 235, 255});
}

TEST(PictureConverter, ReadsNothingBeyondAnOddImage) {
    Glib::init();
    PixelSize const size{63, 35};
    // Exactly what the engine provides: the sanitizers watch the end.
    auto const luma = std::size_t(size.width) * std::size_t(size.height);
    std::vector<std::uint8_t> planes(luma + 2 * (luma / 4), 128);
    PictureConverter converter;
    EXPECT_TRUE(converter.convert({planes.data(), size, 709, false}, {62, 34}, Wide));
}

TEST(PictureConverter, MakesNothingOfAnImageThatIsTooSmall) {
    Glib::init();
    std::vector<std::uint8_t> const planes(64, 128);
    PictureConverter converter;
    EXPECT_FALSE(converter.convert({planes.data(), {1, 9}, 709, false}, {10, 10}, Wide));
}

} // namespace
} // namespace workbench
