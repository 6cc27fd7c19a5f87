// The lines of the document about the editor, run against the editor's own service.

#include "Workbench/ContainerApp/DocumentedLines.h"
#include "Workbench/HostEditor/BusFixture.h"
#include "Workbench/HostEditor/EditorService.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace workbench {

namespace {

class EditorDocumentTest : public BusTest {
protected:
    EditorDocumentTest() {
        auto pattern = (std::filesystem::temp_directory_path() / "zelvix-document.XXXXXX").string();
        folder = mkdtemp(pattern.data());
        service.setActiveSequence(film());
    }

    void SetUp() override {
        ASSERT_TRUE(waitUntil([this] { return isOwned(asker, "com.zelvix.fcp.Editor"); }));
    }

    ~EditorDocumentTest() override {
        auto error = std::error_code{};
        std::filesystem::remove_all(folder, error);
    }

    static SequenceFacts film() {
        auto facts = SequenceFacts{};
        facts.key = "file:///film.mkv";
        facts.uri = facts.key;
        facts.name = "Film";
        facts.rate = {24000, 1001};
        facts.length = 480;
        return facts;
    }

    // What a line writes. The editor goes on meanwhile.
    std::string outputOf(std::string const& line) {
        auto const output = folder / "output";
        auto const isDone = folder / "done";
        spawn(line + " > '" + output.string() + "'; touch '" + isDone.string() + "'");
        EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(isDone); }));
        std::filesystem::remove(isDone);
        return contentsOf(output);
    }

    // Returns the process.
    static GPid spawn(std::string const& line) {
        auto shell = std::string{"sh"};
        auto option = std::string{"-c"};
        auto command = line;
        char* words[] = {shell.data(), option.data(), command.data(), nullptr};
        auto process = GPid{};
        EXPECT_TRUE(
            g_spawn_async(nullptr, words, nullptr, G_SPAWN_SEARCH_PATH, nullptr, nullptr, &process, nullptr));
        return process;
    }

    static std::string contentsOf(std::filesystem::path const& file) {
        auto text = std::ostringstream{};
        text << std::ifstream{file}.rdbuf();
        return text.str();
    }

    std::filesystem::path folder;
    SessionBus bus;
    EditorService service{bus};
    Glib::RefPtr<Gio::DBus::Connection> asker = stranger();
};

} // namespace

TEST_F(EditorDocumentTest, TellsHowToAskWhatIsOpen) {
    auto const table = outputOf(documentedLine(line::askEditorByBusctl));
    for (auto const* member : {"a{sv} 7 ", R"("key" s "file:///film.mkv")", R"("uri" s "file:///film.mkv")",
                               R"("name" s "Film")", R"("frameDuration" (xx) 1001 24000)",
                               R"("durationFrames" x 480)", R"("start" x 0)", R"("dropFrame" b false)"})
        EXPECT_NE(std::string::npos, table.find(member)) << table;
    auto const text = outputOf(documentedLine(line::askEditorByGdbus));
    EXPECT_NE(std::string::npos, text.find("'frameDuration': <(int64 1001, int64 24000)>")) << text;
}

TEST_F(EditorDocumentTest, TellsHowToSeeWhatTheEditorOffers) {
    auto const table = outputOf(documentedLine(line::introspectEditorByBusctl));
    EXPECT_NE(std::string::npos, table.find("\n.ActiveSequence ")) << table;
    EXPECT_NE(std::string::npos, table.find(" property  a{sv} ")) << table;
    auto const text = outputOf(documentedLine(line::introspectEditorByGdbus));
    EXPECT_NE(std::string::npos, text.find("readonly a{sv} ActiveSequence")) << text;
}

TEST_F(EditorDocumentTest, TellsHowToWatchSequencesBeingOpened) {
    auto const output = folder / "seen";
    auto const monitor = spawn("exec " + documentedLine(line::watchEditor) + " > '" + output.string() + "'");
    EXPECT_TRUE(waitUntil([&] { return contentsOf(output).find(" is owned by ") != std::string::npos; }));
    service.setActiveSequence({});
    EXPECT_TRUE(waitUntil([&] { return contentsOf(output).find("PropertiesChanged") != std::string::npos; }))
        << contentsOf(output);
    ::kill(monitor, SIGKILL);
}

} // namespace workbench
