#include "Workbench/ContainerApp/EdlWriter.h"

#include "Workbench/ContainerApp/ExportSamples.h"
#include "Workbench/ContainerApp/OutputFile.h"

#include <gtest/gtest.h>

namespace workbench {

namespace {

constexpr ExportFormat<EdlWriter> edl{"edl"};

} // namespace

TEST(EdlWriter, LabelsEveryEventAsMltDoes) {
    auto const& frames = telltaleFrames();
    for (auto const& [name, count] : sampleRates()) {
        SCOPED_TRACE(name);
        auto const events = edl.read(contentAt(frames, count))["events"];
        auto following = frames;
        for (auto& frame : following)
            ++frame;
        EXPECT_EQ(labelsByMlt(frames, count), each(events, "label"));
        EXPECT_EQ(labelsByMlt(following, count), each(events, "end"));
    }
}

TEST(EdlWriter, SaysWhetherLabelsAreLeftOut) {
    auto const dropped = edl.read(contentAt({1799, 1800}, {{30000, 1001}, 107'892, true}));
    EXPECT_EQ("DROP FRAME", dropped["mode"]);
    EXPECT_EQ((Json{"01:00:59;29", "01:01:00;02"}), each(dropped["events"], "label"));
    auto const twice = edl.read(contentAt({3599, 3600}, {{60000, 1001}, 215'784, true}));
    EXPECT_EQ("DROP FRAME", twice["mode"]);
    EXPECT_EQ((Json{"01:00:59;59", "01:01:00;04"}), each(twice["events"], "label"));
    auto const counted = edl.read(contentAt({1799, 1800}, {{30000, 1001}, 108'000, false}));
    EXPECT_EQ("NON-DROP FRAME", counted["mode"]);
    EXPECT_EQ((Json{"01:00:59:29", "01:01:00:00"}), each(counted["events"], "label"));
    EXPECT_EQ("NON-DROP FRAME", edl.read(contentAt({}, {{25, 1}, 0, true}))["mode"]);
}

TEST(EdlWriter, WritesAMarkerAndALocatorForEachComment) {
    auto content = contentWithReply(pal);
    content.comments[0].colour = "red";
    content.comments[0].duration = 2;
    EXPECT_EQ("TITLE: Reel 1\r\nFCM: NON-DROP FRAME\r\n\r\n"
              "001  AX       V     C        00:00:00:03 00:00:00:04 00:00:00:03 00:00:00:04\r\n"
              " Ana: Comment 1 / Bo: Larger? |C:ResolveColorRed |M:Comment 1 |D:50\r\n"
              "* LOC: 00:00:00:03 RED Comment 1\r\n"
              "002  AX       V     C        00:00:00:07 00:00:00:08 00:00:00:07 00:00:00:08\r\n"
              " Comment 2 |C:ResolveColorBlue |M:Comment 2 |D:1\r\n"
              "* LOC: 00:00:00:07 BLUE Comment 2\r\n",
              edl.document(content));
}

TEST(EdlWriter, CarriesAnyTextInItsFewCharacters) {
    auto const found = edl.read(hostileContent(pal));
    EXPECT_EQ("\"<&>\" ]]> ?", found["title"]);
    ASSERT_EQ(hostileTexts().size(), found["events"].size());
    for (std::size_t place = 0; place < hostileTexts().size(); ++place) {
        auto const& seen = hostileTexts()[place].seen;
        auto const isAscii = std::ranges::all_of(seen, [](char character) { return character > 0; });
        if (isAscii && seen.find('|') == std::string::npos) {
            EXPECT_EQ(Json(seen), found["events"][place]["name"]);
        }
    }
    auto content = contentAt({1}, pal);
    content.comments[0].text = "Café 日 |C:x";
    EXPECT_EQ("Cafe ? /C:x", edl.read(content)["events"][0]["name"]);
}

TEST(EdlWriter, WritesNoEventsAndAsManyAsItHasNumbersFor) {
    EXPECT_EQ(Json::array(), edl.read(contentAt({}, pal))["events"]);
    auto content = longContent(pal);
    content.comments.resize(999);
    EXPECT_EQ(999U, edl.read(content)["events"].size());
}

TEST(EdlWriter, RefusesMoreEventsThanItHasNumbersFor) {
    try {
        std::ignore = edl.document(longContent(pal));
        FAIL();
    } catch (OutputError const& error) {
        EXPECT_STREQ(
            "an edit decision list holds at most 999 comments, and there are 5000: export only the open "
            "ones, or in another format",
            error.what());
    }
}

} // namespace workbench
