#include "Workbench/ContainerApp/ContainerFixture.h"
#include "Workbench/ContainerApp/DocumentedLines.h"
#include "Workbench/ContainerApp/ExportFormat.h"

#include <csignal>
#include <cstdlib>
#include <sstream>

namespace workbench {

namespace {

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
        EXPECT_EQ("", outputOf(documentedLine(line::sendComment) + " 2>&1"));
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

TEST(Document, HasNoLineThatTheTestsDoNotRun) {
    EXPECT_EQ(line::all.size(), countDocumentedLines());
    for (auto const each : line::all)
        std::ignore = documentedLine(each);
}

TEST_F(DocumentTest, TellsHowToSendACommentAndToAskForMarkers) {
    sendDocumentedComment();
    EXPECT_EQ("taa{sv} 1 1 7 \"id\" s \"c1\" \"start\" d 12.5 \"duration\" d 0 \"text\" s \"Logo too small\" "
              "\"author\" s \"\" \"colour\" s \"\" \"resolved\" b false\n",
              outputOf(documentedLine(line::getMarkersByBusctl)));
    EXPECT_EQ("(uint64 1, [{'id': <'c1'>, 'start': <12.5>, 'duration': <0.0>, 'text': <'Logo too small'>, "
              "'author': <''>, 'colour': <''>, 'resolved': <false>}])\n",
              outputOf(documentedLine(line::getMarkersByGdbus)));
}

TEST_F(DocumentTest, TellsHowToImport) {
    auto command = documentedLine(line::import);
    auto const named = std::string{"/home/me/comments.csv"};
    auto const file = folder / "comments.csv";
    writeFile(file, "id,seconds,text\nc1,12.5,Logo too small\n");
    ASSERT_NE(std::string::npos, command.find(named));
    EXPECT_EQ("('imported 1 comment: 1 new, 0 changed, 0 known already',)\n",
              outputOf(command.replace(command.find(named), named.size(), file)));
    EXPECT_EQ("reel-1|c1|12.5|Logo too small\n", outputOf(documentedLine(line::readStore)));
}

TEST_F(DocumentTest, TellsHowToReadTheStore) {
    sendDocumentedComment();
    EXPECT_EQ("reel-1|c1|12.5|Logo too small\n", outputOf(documentedLine(line::readStore)));
}

TEST_F(DocumentTest, TellsHowToWatchMarkersChange) {
    auto const seen = folder / "seen";
    auto const monitor =
        std::stoi(outputOf(documentedLine(line::watchMarkers) + " > '" + seen + "' 2>&1 & echo $!"));
    // It names the owner once it listens.
    EXPECT_TRUE(waitUntil([&] { return contentsOf(seen).find(" is owned by ") != std::string::npos; }));
    sendDocumentedComment();
    auto const expected =
        "/com/zelvix/fcp/Markers: com.zelvix.fcp.Markers1.MarkersChanged ('reel-1', uint64 1)\n";
    EXPECT_TRUE(waitUntil([&] { return contentsOf(seen).ends_with(expected); })) << contentsOf(seen);
    ::kill(monitor, SIGKILL);
}

TEST_F(DocumentTest, TellsHowToSeeWhatTheContainerOffers) {
    auto const table = outputOf(documentedLine(line::introspectByBusctl));
    for (auto const* member : {".GetMarkers ", ".MarkersChanged "})
        EXPECT_NE(std::string::npos, table.find(member)) << table;
    auto const tree = outputOf(documentedLine(line::introspectByGdbus));
    for (auto const* member : {"GetMarkers(in  s sequenceKey,", "out aa{sv} markers);",
                               "MarkersChanged(s sequenceKey,", "Import(in  s file,", "out s sentence);"})
        EXPECT_NE(std::string::npos, tree.find(member)) << tree;
}

} // namespace workbench
