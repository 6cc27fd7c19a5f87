#include "Workbench/ContainerApp/ShotcutWriter.h"

#include "Workbench/ContainerApp/ExportSamples.h"
#include "Workbench/ContainerApp/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace workbench {

namespace {

constexpr ExportFormat<ShotcutWriter> shotcut{"shotcut"};

} // namespace

TEST(ShotcutWriter, PlacesEveryMarkerWhereMltFindsItsFrame) {
    auto const& frames = telltaleFrames();
    for (auto const& [name, count] : sampleRates()) {
        SCOPED_TRACE(name);
        auto content = contentAt(frames, count);
        content.comments[4].duration = secondsAt(5, count.rate);
        auto ends = frames;
        ends[4] += 5;
        auto const found = shotcut.read(content);
        EXPECT_EQ(Json(frames), each(found["markers"], "start"));
        EXPECT_EQ(Json(ends), each(found["markers"], "end"));
        EXPECT_EQ(frames.back() + 1, found["length"]);
    }
}

TEST(ShotcutWriter, IsRenderedFrameByFrameInTheExactRate) {
    for (auto const& [name, count] : sampleRates()) {
        SCOPED_TRACE(name);
        auto content = contentAt({7}, count);
        content.durationFrames = 11;
        auto const found = readBack("decoded", shotcut.document(content));
        EXPECT_EQ(11, found["frames"]);
        EXPECT_EQ(Json(rateText(count.rate)), found["rate"]);
    }
}

TEST(ShotcutWriter, HasTheTracksThatTheEditorLooksFor) {
    auto const folder = TemporaryFolder{};
    writeFile(folder / "x.mlt", shotcut.document(contentAt({1}, pal)));
    auto const xpath = [&folder](std::string const& expression) {
        return outputOf("xmllint --xpath '" + expression + "' '" + folder / "x.mlt" + "'");
    };
    EXPECT_EQ("background\n", xpath(R"(string(//tractor[property/@name="shotcut"]/track[1]/@producer))"));
    EXPECT_EQ("playlist0\n", xpath(R"(string(//tractor[property/@name="shotcut"]/track[2]/@producer))"));
    EXPECT_EQ("1\n", xpath(R"(count(/mlt/playlist[@id="playlist0"]/property[@name="shotcut:video"]))"));
    EXPECT_EQ("true\n", xpath("/mlt/@producer = /mlt/tractor/@id"));
}

TEST(ShotcutWriter, WritesThreadsAndColours) {
    auto content = contentWithReply(pal);
    content.comments[0].colour = "#F80";
    auto const markers = shotcut.read(content)["markers"];
    EXPECT_EQ((Json{"Ana: Comment 1 / Bo: Larger?", "Comment 2"}), each(markers, "text"));
    EXPECT_EQ((Json{"#ff8800", "#008000"}), each(markers, "color"));
}

TEST(ShotcutWriter, CarriesAnyText) {
    auto const markers = shotcut.read(hostileContent(pal))["markers"];
    ASSERT_EQ(hostileTexts().size(), markers.size());
    for (std::size_t place = 0; place < hostileTexts().size(); ++place)
        EXPECT_EQ(Json(hostileTexts()[place].seen), markers[place]["text"]);
}

TEST(ShotcutWriter, WritesNoMarkersAndManyMarkers) {
    EXPECT_EQ(Json::array(), shotcut.read(contentAt({}, pal))["markers"]);
    auto const many = readBack("opened", shotcut.document(longContent({{30000, 1001}, 0, true})))["markers"];
    ASSERT_EQ(5000U, many.size());
    EXPECT_EQ("Comment 5000", many.back()["text"]);
}

} // namespace workbench
