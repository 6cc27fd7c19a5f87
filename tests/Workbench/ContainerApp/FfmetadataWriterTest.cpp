#include "Workbench/ContainerApp/FfmetadataWriter.h"

#include "Workbench/ContainerApp/ExportSamples.h"

#include <gtest/gtest.h>

namespace workbench {

namespace {

constexpr ExportFormat<FfmetadataWriter> ffmetadata{"chapters"};

// The film's own format counts nanoseconds.
void expectNanoseconds(Json const& chapters, FrameRate rate) {
    auto const& frames = telltaleFrames();
    ASSERT_EQ(frames.size(), chapters.size());
    for (std::size_t place = 0; place < frames.size(); ++place) {
        EXPECT_EQ("1/1000000000", chapters[place]["base"]);
        auto const found = chapters[place]["nanoseconds"].get<std::int64_t>();
        auto const exact = frames[place] * rate.denominator * 1'000'000'000;
        EXPECT_LE(std::abs(found * rate.numerator - exact), rate.numerator);
    }
}

} // namespace

TEST(FfmetadataWriter, PlacesEveryChapterOnItsFrame) {
    auto const& frames = telltaleFrames();
    for (auto const& [name, count] : sampleRates()) {
        SCOPED_TRACE(name);
        auto const found = ffmetadata.read(contentAt(frames, count));
        auto ends = std::vector<std::int64_t>{frames.begin() + 1, frames.end()};
        ends.push_back(frames.back() + 1);
        EXPECT_EQ(Json(frames), each(found["own"], "start"));
        EXPECT_EQ(Json(ends), each(found["own"], "end"));
        EXPECT_EQ(Json(rateText({count.rate.denominator, count.rate.numerator})), found["own"][0]["base"]);
        expectNanoseconds(found["muxed"], count.rate);
    }
}

TEST(FfmetadataWriter, EndsAChapterWithItsRangeOrWhereTheNextOneBegins) {
    auto content = contentAt({25, 50, 100}, pal);
    content.comments[0].duration = 2;
    content.comments[1].duration = 1;
    content.durationFrames = 250;
    EXPECT_EQ((Json{50, 75, 250}), each(ffmetadata.read(content)["own"], "end"));
}

TEST(FfmetadataWriter, WritesOneChapterForAFrame) {
    auto content = contentAt({25, 25}, pal);
    content.comments[0].author = "Ana";
    EXPECT_EQ(Json{"Ana: Comment 1 / Comment 2"}, each(ffmetadata.read(content)["own"], "title"));
}

TEST(FfmetadataWriter, CarriesAnyText) {
    auto const found = ffmetadata.read(hostileContent(pal));
    ASSERT_EQ(hostileTexts().size(), found["own"].size());
    ASSERT_EQ(hostileTexts().size(), found["muxed"].size());
    for (std::size_t place = 0; place < hostileTexts().size(); ++place) {
        auto seen = hostileTexts()[place].seen;
        // The one text that its format cannot end with.
        seen += seen.ends_with('\\') ? " " : "";
        EXPECT_EQ(Json(seen), found["own"][place]["title"]);
        EXPECT_EQ(Json(seen), found["muxed"][place]["title"]);
    }
}

TEST(FfmetadataWriter, WritesNoChaptersAndManyChapters) {
    EXPECT_EQ(Json::array(), ffmetadata.read(contentAt({}, pal))["own"]);
    auto const many = ffmetadata.read(longContent({{30000, 1001}, 0, true}))["muxed"];
    ASSERT_EQ(5000U, many.size());
    EXPECT_EQ("Comment 5000", many.back()["title"]);
}

} // namespace workbench
