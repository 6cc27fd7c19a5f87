#include "Workbench/ContainerApp/KdenliveWriter.h"

#include "Workbench/ContainerApp/ExportSamples.h"

#include <gtest/gtest.h>

namespace workbench {

namespace {

constexpr ExportFormat<KdenliveWriter> kdenlive{"kdenlive"};

} // namespace

TEST(KdenliveWriter, PlacesEveryGuideOnItsFrame) {
    auto const& frames = telltaleFrames();
    for (auto const& [name, count] : sampleRates()) {
        auto const guides = kdenlive.read(contentAt(frames, count));
        EXPECT_EQ(Json(frames), each(guides, "pos")) << name;
        EXPECT_EQ(Json(std::vector<int>(frames.size(), 0)), each(guides, "duration")) << name;
    }
}

TEST(KdenliveWriter, CountsTheFramesOfRanges) {
    for (auto const& [name, count] : sampleRates()) {
        auto content = contentAt({1799}, count);
        content.comments[0].duration = secondsAt(13, count.rate);
        EXPECT_EQ(Json{13}, each(kdenlive.read(content), "duration")) << name;
    }
}

TEST(KdenliveWriter, WritesOneGuideForAFrame) {
    auto content = contentAt({20, 10, 20}, pal);
    content.comments[1].author = "Ana";
    auto const guides = kdenlive.read(content);
    EXPECT_EQ((Json{10, 20}), each(guides, "pos"));
    EXPECT_EQ((Json{"Ana: Comment 2", "Comment 1 / Comment 3"}), each(guides, "comment"));
}

TEST(KdenliveWriter, ChoosesTheCategoryThatLooksMostAlike) {
    auto content = contentAt({1, 2, 3, 4, 5}, pal);
    content.comments[1].colour = "red";
    content.comments[2].colour = "#00f";
    content.comments[3].colour = "#00ff80";
    content.comments[4].colour = "no colour";
    EXPECT_EQ((Json{0, 8, 1, 3, 0}), each(kdenlive.read(content), "type"));
}

TEST(KdenliveWriter, CarriesAnyText) {
    auto const guides = kdenlive.read(hostileContent(pal));
    ASSERT_EQ(hostileTexts().size(), guides.size());
    for (std::size_t place = 0; place < hostileTexts().size(); ++place)
        EXPECT_EQ(Json(hostileTexts()[place].seen), guides[place]["comment"]);
}

TEST(KdenliveWriter, WritesNoGuidesAndManyGuides) {
    EXPECT_EQ(Json::array(), kdenlive.read(contentAt({}, pal)));
    auto const many = kdenlive.read(longContent({{30000, 1001}, 0, true}));
    ASSERT_EQ(5000U, many.size());
    EXPECT_EQ(49'990, many.back()["pos"]);
}

} // namespace workbench
