#include "Workbench/ContainerApp/ContainerFixture.h"

namespace workbench {

namespace {

constexpr auto table = "id,seconds,text\nc1,12.5,Logo\nc2,13,Too loud\n";
constexpr auto sentence = "zelvix-container: imported 2 comments: 2 new, 0 changed, 0 known already\n";

struct Ended {
    int code = 0;
    std::string output;
    std::string complaints;
};

class ImportIntoARunningContainer : public ContainerFixture {
protected:
    // Runs the program once more, to import.
    [[nodiscard]] static Ended import(std::vector<std::string> arguments) {
        auto process = ContainerProcess{std::move(arguments)};
        auto ended = Ended{.code = process.wait(), .output = {}, .complaints = {}};
        ended.output = process.output();
        ended.complaints = process.complaints();
        return ended;
    }

    std::string const file = folder / "comments.csv";
};

class ImportWithoutAContainer : public ImportIntoARunningContainer {
protected:
    void SetUp() override {}
};

} // namespace

TEST_F(ImportIntoARunningContainer, IsDoneByThatOne) {
    writeFile(file, table);
    auto const ended = import({"--import", std::filesystem::relative(file), "--sequence", "reel-1"});
    EXPECT_EQ(0, ended.code);
    EXPECT_EQ(sentence, ended.output);
    EXPECT_EQ("", ended.complaints);
    EXPECT_EQ("reel-1|c1\nreel-1|c2\n",
              sql("SELECT key, comments.id FROM comments JOIN sequences ON sequences.id = sequence_id"));
    ASSERT_TRUE(client.waitFor([&] { return !client.changes().empty(); }));
    EXPECT_EQ("reel-1", client.changes().front().sequenceKey);
    EXPECT_TRUE(waitUntil([&] {
        return container->output().find("imported 2 comments: 2 new, 0 changed, 0 known already from " +
                                        file) != std::string::npos;
    }));
}

TEST_F(ImportIntoARunningContainer, GoesToTheSequenceThatIsOpen) {
    writeFile(file, R"([{"pos": 24, "comment": "Logo", "type": 0}])");
    auto const refused = import({"--import", file});
    EXPECT_EQ(6, refused.code);
    EXPECT_EQ(
        "zelvix-container: " + file +
            ": nobody knows the frame rate that its guides count in: open the sequence in the editor, and "
            "import them then\n",
        refused.complaints);
    auto editor = EditorDouble{sequenceNamed("one")};
    ASSERT_TRUE(editor.waitFor([&] { return editor.questions() > 0; }));
    client.settle();
    EXPECT_EQ(0, import({"--import", file}).code);
    EXPECT_EQ("1.001\n", sql("SELECT start_s FROM comments"));
}

TEST_F(ImportIntoARunningContainer, ChangesNothingWhenTheFileIsWrong) {
    writeFile(file, "id,seconds,text\nc1,1,a\nc2,soon,b\n");
    auto const ended = import({"--import", file});
    EXPECT_EQ(6, ended.code);
    EXPECT_EQ("", ended.output);
    EXPECT_EQ("zelvix-container: " + file +
                  ": line 3: \"seconds\" is \"soon\", but it takes a number from 0, as 12.5\n",
              ended.complaints);
    EXPECT_EQ("0\n", sql("SELECT count(*) FROM comments"));
}

TEST_F(ImportIntoARunningContainer, TakesWhatItHasExportedItself) {
    for (auto const* id : {"a", "b"})
        ASSERT_EQ(true, sync({{"id", id}, {"seconds", 1.5}, {"text", "one\ntwo"}, {"color", "#f00"}}));
    ASSERT_EQ(true, client.request("startExport", {{"format", "csv"}, {"folder", folder.path()}}));
    ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(file); }));
    auto const before = sql("SELECT id, body, start_s, colour FROM comments");
    EXPECT_EQ(true, client.request("clearAllMarkers"));
    EXPECT_EQ(0, import({"--import", file}).code);
    EXPECT_EQ(before, sql("SELECT id, body, start_s, colour FROM comments"));
}

TEST_F(ImportWithoutAContainer, IsDoneByItself) {
    writeFile(file, table);
    auto const ended = import({"--import", file, "--database", database, "--sequence", "reel-1"});
    EXPECT_EQ(0, ended.code);
    EXPECT_EQ(sentence, ended.output);
    EXPECT_EQ("", ended.complaints);
    EXPECT_EQ("c1\nc2\n", sql("SELECT id FROM comments"));
    EXPECT_EQ("comments.csv store.sqlite", folder.names());
    EXPECT_EQ(6, import({"--import", folder / "missing.csv", "--database", database}).code);
}

TEST_F(ImportWithoutAContainer, AsksTheEditorWhichSequenceIsOpen) {
    writeFile(file, table);
    auto editor = EditorDouble{sequenceNamed("one")};
    auto process = ContainerProcess{{"--import", file, "--database", database}};
    ASSERT_TRUE(editor.waitFor([&] { return !process.output().empty(); }));
    EXPECT_EQ(0, process.wait());
    EXPECT_EQ("one|Reel one\n", sql("SELECT key, name FROM sequences"));
}

} // namespace workbench
