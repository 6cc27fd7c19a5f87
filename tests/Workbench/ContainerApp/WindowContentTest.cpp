#include "Workbench/ContainerApp/WindowContent.h"
#include "Workbench/ContainerApp/CommentReader.h"
#include "Workbench/ContainerApp/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace workbench {

namespace {

class WindowContentTest : public testing::Test {
protected:
    WindowContentTest() {
        store.comments.setObserver([](auto const&...) {});
    }

    // Before anybody asks for it: the answer is kept.
    static void SetUpTestSuite() { ::setenv("HOME", "/home/ada", 1); }

    void add(Json const& value) { ASSERT_TRUE(store.comments.sync(readComment(value).value())); }

    TemporaryFolder folder;
    Store store{folder / "store"};
};

} // namespace

TEST_F(WindowContentTest, ShowsAnEmptyStore) {
    auto const content = readWindowContent(store);
    ASSERT_EQ(1U, content.sequences.size());
    EXPECT_EQ("No sequence open", content.sequences[0].name);
    store.settings.set(outputFolderSetting, "/films");
    EXPECT_EQ("/films", readWindowContent(store).folder);
    EXPECT_EQ("No comments", content.summary);
    EXPECT_TRUE(content.comments.empty());
    EXPECT_TRUE(content.exports.empty());
}

TEST_F(WindowContentTest, ShowsTheCommentsOfTheActiveSequence) {
    auto sequence = HostSequence{};
    sequence.key = "one";
    sequence.name = "Reel 1";
    sequence.rate = FrameRate{25, 1};
    sequence.firstFrame = 90'000;
    store.sequences.setActive(sequence);
    add({{"id", "b"}, {"seconds", 2}, {"text", "Too loud"}, {"author", "Ben"}, {"resolved", true}});
    add({{"id", "a"},
         {"seconds", 1.52},
         {"text", "Logo"},
         {"author", "Ana"},
         {"replies", {{{"id", "r"}, {"text", "yes"}}}}});
    add({{"id", "c"}, {"seconds", 1}, {"sequenceId", "other"}});
    auto const content = readWindowContent(store);
    EXPECT_EQ("one", content.shown);
    EXPECT_EQ("2 comments, 1 resolved", content.summary);
    EXPECT_EQ((std::vector<WindowContent::CommentRow>{{"01:00:01:13", "Ana", "Logo", false, false},
                                                      {"01:00:01:13", "", "yes", true, false},
                                                      {"01:00:02:00", "Ben", "Too loud", false, true}}),
              content.comments);
}

TEST_F(WindowContentTest, ListsTheSequencesWithTheActiveOneFirst) {
    auto sequence = HostSequence{};
    sequence.key = "one";
    sequence.name = "Reel 1";
    store.sequences.setActive(sequence);
    add({{"id", "a"}, {"seconds", 1}});
    sequence.key = "zero";
    sequence.name = "Reel 0";
    store.sequences.setActive(sequence);
    add({{"id", "b"}, {"seconds", 1}, {"sequenceId", "a page's key"}});
    auto const expected = std::vector<WindowContent::SequenceRow>{
        {"zero", "Reel 0"}, {"a page's key", "a page's key"}, {"one", "Reel 1"}};
    EXPECT_EQ(expected, readWindowContent(store).sequences);
}

TEST_F(WindowContentTest, ShowsTheSequenceThatIsAskedFor) {
    add({{"id", "a"}, {"seconds", 1}, {"text", "x"}, {"sequenceId", "other"}});
    auto const other = readWindowContent(store, "other");
    EXPECT_EQ("other", other.shown);
    ASSERT_EQ(1U, other.comments.size());
    EXPECT_EQ("x", other.comments[0].text);
    for (auto const* key : {"", "unknown"}) {
        EXPECT_EQ(defaultSequence, readWindowContent(store, key).shown);
        EXPECT_TRUE(readWindowContent(store, key).comments.empty());
    }
}

TEST_F(WindowContentTest, ShowsClockTimesWithoutARate) {
    add({{"id", "a"}, {"seconds", 3723.0416}});
    auto const content = readWindowContent(store);
    EXPECT_EQ("01:02:03.042", content.comments.at(0).time);
    EXPECT_EQ("1 comment, 0 resolved", content.summary);
    EXPECT_EQ("Comments without a sequence", content.sequences.at(0).name);
}

TEST_F(WindowContentTest, ShowsTheNewestExportsFirst) {
    auto const first = store.exports.begin(std::nullopt, "csv");
    store.exports.finish(first, ExportState::Done, "/films/a.csv", "");
    auto const second = store.exports.begin(std::nullopt, "csv");
    store.exports.finish(second, ExportState::Failed, "", "no space left");
    auto const third = store.exports.begin(std::nullopt, "csv");
    store.exports.finish(third, ExportState::Cancelled, "", "");
    std::ignore = store.exports.begin(std::nullopt, "csv");
    auto texts = std::string{};
    for (auto const& row : readWindowContent(store).exports) {
        texts += row.text + "|";
        EXPECT_EQ(5U, row.time.size());
    }
    EXPECT_EQ("Exporting ...|Cancelled|Failed: no space left|/films/a.csv|", texts);
}

TEST_F(WindowContentTest, ShortensPathsInTheHomeFolder) {
    auto const shownAs = [this](std::string const& path) {
        store.settings.set(outputFolderSetting, path);
        return readWindowContent(store).folder;
    };
    EXPECT_EQ("~/Movies", shownAs("/home/ada/Movies"));
    EXPECT_EQ("~", shownAs("/home/ada"));
    EXPECT_EQ("/home/adam/Movies", shownAs("/home/adam/Movies"));
    EXPECT_EQ("/mnt/disk/home/ada", shownAs("/mnt/disk/home/ada"));
    auto const made = store.exports.begin(std::nullopt, "csv");
    store.exports.finish(made, ExportState::Done, "/home/ada/Movies/a.csv", "");
    EXPECT_EQ("~/Movies/a.csv", readWindowContent(store).exports.at(0).text);
}

} // namespace workbench
