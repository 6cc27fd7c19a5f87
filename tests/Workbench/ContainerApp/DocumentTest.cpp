#include "Workbench/ContainerApp/ContainerFixture.h"
#include "Workbench/ContainerApp/ExportFormat.h"

#include <csignal>
#include <cstdlib>
#include <sstream>

namespace workbench {

namespace {

// The one line of the document that begins like this, without its indentation.
std::string documentedLine(std::string const& beginning) {
    auto stream = std::istringstream{contentsOf(CONTAINER_DOCUMENT)};
    auto found = std::vector<std::string>{};
    for (auto line = std::string{}; std::getline(stream, line);)
        if (line.starts_with("    " + beginning))
            found.push_back(line.substr(4));
    EXPECT_EQ(1U, found.size()) << beginning;
    return found.empty() ? "false" : found.front();
}

// The program as a person starts it, with the store in the user's data folder.
class DocumentTest : public ContainerFixture {
protected:
    void SetUp() override {
        database = std::string{std::getenv("XDG_DATA_HOME")} + "/zelvix/container.sqlite";
        std::filesystem::remove_all(std::filesystem::path{database}.parent_path());
        container = std::make_unique<ContainerProcess>(std::vector<std::string>{"--no-window"});
        ASSERT_TRUE(container->isReady()) << container->complaints();
    }

    void sendDocumentedComment() {
        EXPECT_EQ("", outputOf(documentedLine("gdbus emit --session") + " 2>&1"));
        ASSERT_TRUE(client.waitFor([&] { return !client.answers("req-1-000000").empty(); }));
        EXPECT_EQ(std::vector{Json(true)}, client.answers("req-1-000000"));
    }
};

} // namespace

TEST(Document, NamesEveryFormatOfAnExport) {
    auto const document = contentsOf(CONTAINER_DOCUMENT);
    auto names = std::istringstream{exportFormatNames()};
    for (auto word = std::string{}; names >> word;) {
        if (word.front() != '"')
            continue;
        auto const name = word.substr(1, word.rfind('"') - 1);
        auto const row = "| `\"" + name + "\"` | `" + std::string{findExportFormat(name)->extension} + "` |";
        EXPECT_NE(std::string::npos, document.find(row)) << row;
    }
}

TEST_F(DocumentTest, TellsHowToSendACommentAndToAskForMarkers) {
    sendDocumentedComment();
    EXPECT_EQ("taa{sv} 1 1 7 \"id\" s \"c1\" \"start\" d 12.5 \"duration\" d 0 \"text\" s \"Logo too small\" "
              "\"author\" s \"\" \"colour\" s \"\" \"resolved\" b false\n",
              outputOf(documentedLine("busctl --user call")));
    EXPECT_EQ("(uint64 1, [{'id': <'c1'>, 'start': <12.5>, 'duration': <0.0>, 'text': <'Logo too small'>, "
              "'author': <''>, 'colour': <''>, 'resolved': <false>}])\n",
              outputOf(documentedLine("gdbus call --session --dest com.zelvix.fcp.Container --object-path "
                                      "/com/zelvix/fcp/Markers")));
}

TEST_F(DocumentTest, TellsHowToImport) {
    auto line = documentedLine("gdbus call --session --dest com.zelvix.fcp.Container --object-path "
                               "/com/zelvix/fcp/Container");
    auto const named = std::string{"/home/me/comments.csv"};
    auto const file = folder / "comments.csv";
    writeFile(file, "id,seconds,text\nc1,12.5,Logo too small\n");
    ASSERT_NE(std::string::npos, line.find(named));
    EXPECT_EQ("('imported 1 comment: 1 new, 0 changed, 0 known already',)\n",
              outputOf(line.replace(line.find(named), named.size(), file)));
    EXPECT_EQ("reel-1|c1|12.5|Logo too small\n", outputOf(documentedLine("sqlite3")));
}

TEST_F(DocumentTest, TellsHowToReadTheStore) {
    sendDocumentedComment();
    EXPECT_EQ("reel-1|c1|12.5|Logo too small\n", outputOf(documentedLine("sqlite3")));
}

TEST_F(DocumentTest, TellsHowToWatchMarkersChange) {
    auto const seen = folder / "seen";
    auto const monitor =
        std::stoi(outputOf(documentedLine("gdbus monitor") + " > '" + seen + "' 2>&1 & echo $!"));
    // It names the owner once it listens.
    EXPECT_TRUE(waitUntil([&] { return contentsOf(seen).find(" is owned by ") != std::string::npos; }));
    sendDocumentedComment();
    auto const expected =
        "/com/zelvix/fcp/Markers: com.zelvix.fcp.Markers1.MarkersChanged ('reel-1', uint64 1)\n";
    EXPECT_TRUE(waitUntil([&] { return contentsOf(seen).ends_with(expected); })) << contentsOf(seen);
    ::kill(monitor, SIGKILL);
}

TEST_F(DocumentTest, TellsHowToAskTheEditor) {
    auto editor = EditorDouble{sequenceNamed("one")};
    auto const answer = folder / "answer";
    ASSERT_EQ(0, std::system((documentedLine("busctl --user get-property") + " > '" + answer + "' && mv '" +
                              answer + "' '" + answer + ".done' &")
                                 .c_str()));
    ASSERT_TRUE(editor.waitFor([&] { return std::filesystem::exists(answer + ".done"); }));
    EXPECT_EQ("a{sv} 7 \"key\" s \"one\" \"name\" s \"Reel one\" \"uri\" s \"file:///one\" \"frameDuration\" "
              "(xx) 1001 24000 "
              "\"durationFrames\" x 480 \"start\" x 0 \"dropFrame\" b false\n",
              contentsOf(answer + ".done"));
}

} // namespace workbench
