#include "Workbench/ContainerApp/CommentImport.h"

#include "Workbench/ContainerApp/CommentReader.h"
#include "Workbench/ContainerApp/CsvWriter.h"
#include "Workbench/ContainerApp/ExportSamples.h"
#include "Workbench/ContainerApp/ImportError.h"
#include "Workbench/ContainerApp/KdenliveReader.h"
#include "Workbench/ContainerApp/KdenliveWriter.h"
#include "Workbench/ContainerApp/Store.h"
#include "Workbench/ContainerApp/TemporaryFolder.h"
#include "Workbench/ContainerApp/TextRepair.h"

#include <gtest/gtest.h>

namespace workbench {

namespace {

// A store of its own with the open sequence "reel".
class CommentImportTest : public testing::Test {
protected:
    CommentImportTest() {
        store.comments.setObserver([this](auto const& key, std::uint64_t) { writes += key + " "; });
        open({{25, 1}, 0, false});
    }

    void open(FrameCount const& count) {
        auto sequence = HostSequence{};
        sequence.key = "reel";
        sequence.rate = count.rate;
        sequence.firstFrame = count.firstFrame;
        sequence.dropFrame = count.dropFrame;
        store.sequences.setActive(sequence);
    }

    void add(Json const& value) { ASSERT_TRUE(store.comments.sync(readComment(value).value())); }

    ImportOutcome import(std::string const& text) {
        writeFile(file, text);
        return importer.read(file, "reel");
    }

    // Without the file's name.
    std::string complaint(std::string const& text) {
        try {
            return sentenceFor(import(text));
        } catch (ImportError const& error) {
            auto const sentence = std::string{error.what()};
            EXPECT_EQ(0U, sentence.find(file + ": ")) << sentence;
            return sentence.substr(file.size() + 2);
        }
    }

    std::vector<Comment> list() { return store.comments.comments("reel"); }

    [[nodiscard]] std::string csv() {
        auto const sequence = store.sequences.description("reel").value();
        return written(
            CsvWriter{FrameCount{*sequence.rate, sequence.firstFrame, sequence.dropFrame}, list()});
    }

    [[nodiscard]] std::string guides() {
        auto const rate = store.sequences.description("reel").value().rate.value();
        return written(KdenliveWriter{
            timelineOf({.title = "", .count = FrameCount{rate}, .durationFrames = 0, .comments = list()})});
    }

    // The comments as texts, in one line for each.
    [[nodiscard]] static std::string described(std::vector<Comment> const& comments) {
        return written(CsvWriter{std::nullopt, comments});
    }

    void empty() {
        store.comments.clear();
        ASSERT_TRUE(list().empty());
    }

    TemporaryFolder folder;
    std::string const file = folder / "comments.txt";
    std::string writes;
    Store store{folder / "store"};
    CommentImport importer{store.comments, store.sequences};
};

// What a page may have sent.
Json everything() {
    return {{"id", "c1"},
            {"seconds", 1.0 / 3},
            {"duration", 0.1},
            {"author", "Ana, \"the\" editor"},
            {"text", "'=one,\r\ntwo \"three\" \xF0\x9F\x8E\xAC"},
            {"color", "#ff8000"},
            {"resolved", true},
            {"replies", {{{"id", "=r1"}, {"text", "-yes"}, {"author", "Ben"}}}}};
}

std::string withoutColumn(std::string const& table, std::string const& name) {
    auto changed = table;
    return changed.replace(changed.find(name + ","), name.size(), "other");
}

} // namespace

TEST_F(CommentImportTest, TakesBackACsvExportWithoutALoss) {
    auto const& frames = telltaleFrames();
    for (auto const& [name, count] : sampleRates()) {
        SCOPED_TRACE(name);
        open(count);
        add(everything());
        for (auto const frame : frames)
            add({{"id", std::to_string(frame)}, {"seconds", secondsAt(frame, count.rate)}, {"text", "'tis"}});
        auto const before = list();
        auto const table = csv();
        empty();
        EXPECT_EQ((ImportOutcome{.added = frames.size() + 2}), import(table));
        auto const after = list();
        EXPECT_EQ(described(before), described(after));
        ASSERT_EQ(before.size(), after.size());
        for (std::size_t place = 0; place < before.size(); ++place) {
            EXPECT_EQ(before[place].parentId, after[place].parentId);
            EXPECT_EQ(before[place].colour, after[place].colour);
            EXPECT_EQ(before[place].start, after[place].start);
        }
        EXPECT_EQ(table, csv());
        empty();
    }
}

TEST_F(CommentImportTest, FindsEachFrameByItsNumberAndByItsLabel) {
    auto const& frames = telltaleFrames();
    for (auto const& [name, count] : sampleRates()) {
        SCOPED_TRACE(name);
        open(count);
        auto const content = contentAt(frames, count);
        auto const table = written(CsvWriter{count, content.comments});
        for (auto const& shortened :
             {withoutColumn(table, "seconds"), withoutColumn(withoutColumn(table, "seconds"), "frame")}) {
            EXPECT_EQ((ImportOutcome{.added = frames.size()}), import(shortened));
            EXPECT_EQ(table, csv());
            empty();
        }
    }
}

TEST_F(CommentImportTest, TakesBackAnyText) {
    auto comments = std::vector<Comment>{};
    for (auto const& text : hostileTexts())
        if (text.typed.find('\xFF') == std::string::npos)
            comments.push_back(commentAt(static_cast<double>(comments.size()), text.typed));
    for (auto& comment : comments)
        comment.id = std::to_string(comment.start);
    auto const table = written(CsvWriter{FrameCount{}, comments});
    import(table);
    EXPECT_EQ(table, csv());
}

TEST_F(CommentImportTest, TakesBackGuidesWithoutALoss) {
    auto const& frames = telltaleFrames();
    for (auto const& [name, count] : sampleRates()) {
        SCOPED_TRACE(name);
        open(count);
        for (auto const frame : frames)
            add({{"id", std::to_string(frame)},
                 {"seconds", secondsAt(frame, count.rate)},
                 {"duration", frame > 2 ? secondsAt(13, count.rate) : 0},
                 {"color", frame % 2 == 0 ? "red" : "green"},
                 {"text", "Comment " + std::to_string(frame)}});
        auto const exported = guides();
        auto const before = list();
        empty();
        EXPECT_EQ((ImportOutcome{.added = frames.size()}), import(exported));
        EXPECT_EQ(exported, guides());
        auto const after = list();
        ASSERT_EQ(before.size(), after.size());
        for (std::size_t place = 0; place < before.size(); ++place) {
            EXPECT_EQ(before[place].start, after[place].start);
            EXPECT_EQ(before[place].duration, after[place].duration);
            EXPECT_EQ(before[place].text, after[place].text);
        }
        empty();
    }
}

TEST_F(CommentImportTest, TakesBackTheCategoriesOfGuides) {
    auto guide = Json::array();
    for (auto category = 0; category < 10; ++category)
        guide.push_back({{"pos", category}, {"comment", "x"}, {"type", category}});
    import(guide.dump());
    auto const exported = Json::parse(guides());
    for (auto category = std::size_t{0}; category < 9; ++category)
        EXPECT_EQ(category, exported[category]["type"]);
    EXPECT_EQ(0, exported[9]["type"]); // one that a user has added
}

TEST_F(CommentImportTest, LosesInGuidesWhatTheyHaveNoPlaceFor) {
    add({{"id", "c1"},
         {"seconds", 1.01},
         {"author", "Ana"},
         {"text", "Logo\ntoo small"},
         {"color", "#ff0000"},
         {"resolved", true},
         {"replies", {{{"id", "r1"}, {"text", "yes"}}}}});
    auto const exported = guides();
    empty();
    import(exported);
    auto const after = list();
    ASSERT_EQ(1U, after.size()); // the reply has become a part of the text
    EXPECT_NE("c1", after[0].id);
    EXPECT_EQ(1, after[0].start); // of its frame
    EXPECT_EQ("", after[0].author);
    EXPECT_EQ("Ana: Logo too small / yes", after[0].text);
    EXPECT_EQ("#da4453", after[0].colour); // of the category
    EXPECT_FALSE(after[0].resolved);
    EXPECT_EQ(exported, guides());
}

TEST_F(CommentImportTest, DoesNothingTwice) {
    add(everything());
    add({{"id", "c2"}, {"seconds", 1}, {"text", "Too loud"}});
    for (auto const& text : {csv(), withoutColumn(csv(), "id"), guides()}) {
        writes.clear();
        auto const table = csv();
        EXPECT_EQ(0U, import(text).added + import(text).changed) << text;
        EXPECT_EQ("", writes);
        EXPECT_EQ(table, csv());
    }
    auto const foreign = std::string{"seconds,text\n7,x\n7,x\n8,y\n"};
    EXPECT_EQ((ImportOutcome{.added = 3}), import(foreign));
    EXPECT_EQ((ImportOutcome{.known = 3}), import(foreign));
    EXPECT_EQ((ImportOutcome{.added = 1}), import(R"([{"pos": 900, "comment": "z", "type": 1}])"));
    EXPECT_EQ((ImportOutcome{.known = 1}), import(R"([{"pos": 900, "comment": "z", "type": 1}])"));
}

TEST_F(CommentImportTest, TakesEachCommentForOneLineOnly) {
    add({{"id", "a"}, {"seconds", 1}, {"text", "x"}});
    add({{"id", "b"}, {"seconds", 1}, {"text", "x"}});
    EXPECT_EQ((ImportOutcome{.added = 1, .known = 2}), import("seconds,text\n1,x\n1,x\n1,x\n"));
}

TEST_F(CommentImportTest, ChangesOnlyWhatTheFileSpeaksOf) {
    auto page = everything();
    page["drawing"] = {{"x", 1}};
    page["author"] = {{"name", "Ana"}, {"picture", "ana.png"}};
    add(page);
    EXPECT_EQ((ImportOutcome{.changed = 1}), import("id,seconds,text\nc1,2,Logo is fine\n"));
    auto const after = list();
    ASSERT_EQ(2U, after.size());
    EXPECT_EQ("c1", after[1].id);
    EXPECT_EQ(2, after[1].start);
    EXPECT_EQ("Logo is fine", after[1].text);
    EXPECT_EQ("Ana", after[1].author);
    EXPECT_EQ("#ff8000", after[1].colour);
    EXPECT_TRUE(after[1].resolved);
    page["seconds"] = 2;
    page["text"] = "Logo is fine";
    EXPECT_EQ(page, Json::parse(store.comments.raw("reel", "c1")));
    EXPECT_EQ("reel reel ", writes);
}

TEST_F(CommentImportTest, TakesAwayWhatTheFileLeavesEmpty) {
    add(everything());
    import("id,seconds,text,colour,parent,resolved\nc1,0.5,a,,,false\n=r1,0.5,-yes,,,\n");
    for (auto const& comment : list()) {
        EXPECT_FALSE(comment.colour);
        EXPECT_FALSE(comment.parentId);
        EXPECT_FALSE(comment.resolved);
    }
}

TEST_F(CommentImportTest, KeepsWhatTheFileDoesNotName) {
    add({{"id", "a"}, {"seconds", 1}});
    EXPECT_EQ((ImportOutcome{.added = 1}), import("id,seconds,text\nb,2,x\n"));
    EXPECT_EQ(2U, list().size());
}

TEST_F(CommentImportTest, ChangesNothingWhenOneLineIsWrong) {
    add({{"id", "a"}, {"seconds", 1}, {"text", "old"}});
    auto const table = csv();
    writes.clear();
    EXPECT_EQ(0U, complaint("id,seconds,text\na,1,new\nb,2,x\nc,soon,y\n").find("line 4: \"seconds\" is "));
    EXPECT_EQ(table, csv());
    EXPECT_EQ("", writes);
}

TEST_F(CommentImportTest, ChangesNothingWhenTheStoreFailsInTheMiddle) {
    add({{"id", "a"}, {"seconds", 1}});
    auto const table = csv();
    store.database.execute("CREATE TEMP TRIGGER full BEFORE INSERT ON main.comments WHEN NEW.id = 'c' "
                           "BEGIN SELECT raise(ABORT, 'full'); END");
    EXPECT_THROW(import("id,seconds,text\nb,2,x\nc,3,y\n"), DatabaseError);
    EXPECT_EQ(table, csv());
}

TEST_F(CommentImportTest, SaysWhichIdentifierStandsThereTwice) {
    EXPECT_EQ(
        "line 4: the identifier \"a\" stands in line 2 already: give this comment another one, or leave "
        "it empty",
        complaint("id,seconds,text\na,1,x\nb,1,y\na,2,z\n"));
}

TEST_F(CommentImportTest, SaysWhichReplyHasNoComment) {
    add({{"id", "a"}, {"seconds", 1}});
    auto const reply = [](std::string const& parent) {
        return "id,seconds,text,parent\nb,1,x," + parent + "\n";
    };
    EXPECT_EQ("imported 1 comment: 1 new, 0 changed, 0 known already", complaint(reply("a")));
    EXPECT_EQ(
        "line 2: it answers \"nobody\", which is no other comment of the file or the list: add that one, "
        "or empty \"parent\"",
        complaint(reply("nobody")));
    EXPECT_EQ(0U, complaint(reply("b")).find("line 2: it answers \"b\""));
}

TEST_F(CommentImportTest, SaysWhyItCannotUseAFile) {
    EXPECT_EQ("line 2: the text is not UTF-8 there: save the file with the character set \"UTF-8\"",
              complaint("seconds,text\n1,caf\xE9\n"));
    EXPECT_EQ(0U, complaint("<?xml version=\"1.0\"?>\n<mlt/>").find("it holds neither a table of comments"));
    EXPECT_EQ(0U, complaint("{\"guides\": []}").find("it holds neither a table of comments"));
    EXPECT_THROW(importer.read(folder / "missing", "reel"), ImportError);
    EXPECT_THROW(importer.read(folder.path(), "reel"), ImportError);
}

TEST_F(CommentImportTest, SaysWhichGuideIsWrong) {
    EXPECT_EQ("line 3: the guide's \"pos\" is no count of frames from 0: correct it, or remove the guide",
              complaint("[\n{\"pos\": 1, \"comment\": \"a\"},\n{\"comment\":\n \"b\"}]"));
    for (auto const* guide : {R"({"pos": -1})", R"({"pos": 1.5})", R"({"pos": "1"})", R"({"pos": 1e300})",
                              R"({"pos": 1, "comment": 7})", R"({"pos": 1, "duration": -1})"})
        EXPECT_EQ(0U, complaint("[" + std::string{guide} + "]").find("line 1: the guide's ")) << guide;
    EXPECT_EQ("line 2: the text is no JSON from here on: export the guides once more", complaint("[\n{,}]"));
    EXPECT_EQ("line 1: guides are a JSON array of objects: export them from the list of guides",
              complaint("[1]"));
    EXPECT_EQ("imported 0 comments: 0 new, 0 changed, 0 known already", complaint("[]"));
}

TEST_F(CommentImportTest, SaysThatGuidesNeedARate) {
    writeFile(file, R"([{"pos": 1, "comment": "a"}])");
    try {
        importer.read(file, "unknown");
        ADD_FAILURE();
    } catch (ImportError const& error) {
        EXPECT_EQ(file + ": nobody knows the frame rate that its guides count in: open the sequence in the "
                         "editor, and import them then",
                  error.what());
    }
}

TEST_F(CommentImportTest, ReplacesWhatTheBusDoesNotCarry) {
    import(R"([{"pos": 1, "comment": "a\u0000b\uffffc"}])");
    EXPECT_EQ("a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD"
              "c",
              list().at(0).text);
    EXPECT_EQ("\xEF\xBF\xBD \xEF\xBF\xBD \xF0\x9F\x8E\xAC",
              carriedByBus("\xEF\xB7\x90 \xF3\xAF\xBF\xBE \xF0\x9F\x8E\xAC"));
}

TEST_F(CommentImportTest, ImportsIntoASequenceThatNobodyHasDescribed) {
    writeFile(file, "seconds,text\n1,a\n");
    EXPECT_EQ((ImportOutcome{.added = 1}), importer.read(file, "other"));
    EXPECT_EQ(1U, store.comments.comments("other").size());
    EXPECT_TRUE(list().empty());
}

} // namespace workbench
