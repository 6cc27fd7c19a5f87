#include "Workbench/ContainerApp/FcpxmlWriter.h"

#include "Workbench/ContainerApp/ExportSamples.h"
#include "Workbench/ContainerApp/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace workbench {

namespace {

constexpr ExportFormat<FcpxmlWriter> fcpxml{"fcpxml"};

std::string xpath(std::string const& contents, std::string const& expression) {
    auto const folder = TemporaryFolder{};
    writeFile(folder / "x.fcpxml", contents);
    return outputOf("xmllint --xpath '" + expression + "' '" + folder / "x.fcpxml" + "'");
}

// The elements that an export may consist of. The format's own definition knows many more.
constexpr auto declarations = R"dtd(
<!ELEMENT fcpxml (resources, event)> <!ATTLIST fcpxml version CDATA #FIXED "1.10">
<!ELEMENT resources (format)>
<!ELEMENT format EMPTY>
<!ATTLIST format id ID #REQUIRED frameDuration CDATA #REQUIRED width CDATA #REQUIRED height CDATA #REQUIRED>
<!ELEMENT event (project)> <!ATTLIST event name CDATA #REQUIRED>
<!ELEMENT project (sequence)> <!ATTLIST project name CDATA #REQUIRED>
<!ELEMENT sequence (spine)>
<!ATTLIST sequence format IDREF #REQUIRED duration CDATA #REQUIRED tcStart CDATA #REQUIRED tcFormat (DF|NDF) #REQUIRED>
<!ELEMENT spine (gap)>
<!ELEMENT gap (marker)*>
<!ATTLIST gap name CDATA #REQUIRED offset CDATA #REQUIRED start CDATA #REQUIRED duration CDATA #REQUIRED>
<!ELEMENT marker EMPTY>
<!ATTLIST marker start CDATA #REQUIRED duration CDATA #REQUIRED value CDATA #REQUIRED completed (0|1) #REQUIRED
    note CDATA #REQUIRED>
)dtd";

// What the script that checks against a definition says, and its exit status.
std::string checked(std::string const& contents) {
    auto const folder = TemporaryFolder{};
    writeFile(folder / "our.dtd", declarations);
    writeFile(folder / "x.fcpxml", contents);
    return outputOf("cd '" + folder.path() + "' && '" FCPXML_CHECK "' our.dtd x.fcpxml 2>&1; echo $?");
}

} // namespace

TEST(FcpxmlWriter, PlacesEveryMarkerOnItsFrame) {
    auto const frames = std::vector<std::int64_t>{0, 1, 2, 1799, 1800, 17'981, 17'982, 107'892, 2'589'407};
    for (auto const& [name, count] : sampleRates()) {
        SCOPED_TRACE(name);
        auto const found = fcpxml.read(contentAt(frames, count));
        EXPECT_EQ(Json(frames), each(found["markers"], "frame"));
        EXPECT_EQ(Json(std::vector<int>(frames.size(), 1)), each(found["markers"], "frames"));
        EXPECT_EQ(frames.back() + 1, found["length"]);
        EXPECT_EQ(found["length"], found["sequenceLength"]);
    }
}

TEST(FcpxmlWriter, WritesTimesAsFractionsOfTheExactRate) {
    auto const film = fcpxml.read(contentAt({0, 1, 24}, {{24000, 1001}, 86'400, false}));
    EXPECT_EQ("1001/24000s", film["frameDuration"]);
    EXPECT_EQ((Json{"0/24000s", "1001/24000s", "24024/24000s"}), each(film["markers"], "start"));
    auto const european = fcpxml.read(contentAt({0, 1, 50}, pal));
    EXPECT_EQ("1/25s", european["frameDuration"]);
    EXPECT_EQ((Json{"0s", "1/25s", "2s"}), each(european["markers"], "start"));
    EXPECT_EQ("1001/60000s", fcpxml.read(contentAt({}, {{60000, 1001}, 0, false}))["frameDuration"]);
    EXPECT_EQ("1/25s", fcpxml.read(contentAt({}, {{25'000, 1000}, 0, false}))["frameDuration"]);
}

TEST(FcpxmlWriter, BeginsAtTheSequencesFirstLabel) {
    for (auto const& [name, count] : sampleRates()) {
        SCOPED_TRACE(name);
        auto const found = fcpxml.read(contentAt({5}, count));
        EXPECT_EQ(count.firstFrame, found["first"]);
        EXPECT_EQ(count.firstFrame, found["offset"]);
        EXPECT_EQ(count.dropFrame ? "DF" : "NDF", found["tcFormat"]);
    }
}

TEST(FcpxmlWriter, DropsNoLabelsWhereThatIsNotDefined) {
    EXPECT_EQ("NDF", fcpxml.read(contentAt({}, {{25, 1}, 0, true}))["tcFormat"]);
}

TEST(FcpxmlWriter, IsAsLongAsTheSequence) {
    auto content = contentAt({5}, pal);
    content.durationFrames = 250;
    EXPECT_EQ(250, fcpxml.read(content)["length"]);
}

TEST(FcpxmlWriter, HasOneProjectWithOneGapThatCarriesTheMarkers) {
    auto const text = fcpxml.document(contentAt({1, 2, 3}, pal));
    EXPECT_EQ("1.10\n", xpath(text, "string(/fcpxml/@version)"));
    EXPECT_EQ("1\n", xpath(text, "count(/fcpxml/event/project/sequence/spine/*)"));
    EXPECT_EQ("3\n", xpath(text, "count(/fcpxml/event/project/sequence/spine/gap/marker)"));
    EXPECT_EQ("3\n", xpath(text, "count(//marker)"));
    EXPECT_EQ("true\n", xpath(text, "//sequence/@format = /fcpxml/resources/format/@id"));
    EXPECT_EQ("Reel 1\n", xpath(text, "string(//project/@name)"));
}

TEST(FcpxmlWriter, PassesTheScriptThatChecksAgainstADefinition) {
    auto const text = fcpxml.document(hostileContent(pal));
    EXPECT_THAT(checked(text), testing::EndsWith("x.fcpxml is as our.dtd wants it\n0\n"));
    auto changed = text;
    changed.replace(changed.find("<marker "), 8, "<mark ");
    EXPECT_THAT(checked(changed), testing::EndsWith("x.fcpxml is not as our.dtd wants it\n1\n"));
}

TEST(FcpxmlWriter, MakesAToDoOfEachCommentWithItsThreadAsTheNote) {
    auto content = contentWithReply(pal);
    content.comments[2].resolved = true;
    auto const markers = fcpxml.read(content)["markers"];
    EXPECT_EQ((Json{"Comment 1", "Comment 2"}), each(markers, "value"));
    EXPECT_EQ((Json{"Ana: Comment 1\nBo: Larger?", "Comment 2"}), each(markers, "note"));
    EXPECT_EQ((Json{"0", "1"}), each(markers, "completed"));
}

TEST(FcpxmlWriter, CarriesAnyText) {
    auto const found = fcpxml.read(hostileContent(pal));
    EXPECT_EQ("\"<&>\" ]]> 🎬", found["name"]);
    ASSERT_EQ(hostileTexts().size(), found["markers"].size());
    for (std::size_t place = 0; place < hostileTexts().size(); ++place) {
        EXPECT_EQ(Json(hostileTexts()[place].seen), found["markers"][place]["value"]);
        EXPECT_EQ(Json(hostileTexts()[place].seen), found["markers"][place]["note"]);
    }
}

TEST(FcpxmlWriter, ReplacesWhatXmlCannotCarry) {
    auto content = contentAt({1}, pal);
    content.comments[0].text = "a\xEF\xBF\xBE"
                               "b";
    EXPECT_EQ("a\xEF\xBF\xBD"
              "b",
              fcpxml.read(content)["markers"][0]["value"]);
}

TEST(FcpxmlWriter, WritesNoMarkersAndManyMarkers) {
    EXPECT_EQ(Json::array(), fcpxml.read(contentAt({}, pal))["markers"]);
    auto const many = fcpxml.read(longContent({{30000, 1001}, 0, true}))["markers"];
    ASSERT_EQ(5000U, many.size());
    EXPECT_EQ(49'990, many.back()["frame"]);
    EXPECT_EQ("Comment 5000", many.back()["value"]);
}

} // namespace workbench
