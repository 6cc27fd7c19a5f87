#include "Workbench/ContainerApp/WindowProgramFixture.h"

#include <algorithm>

namespace workbench {

namespace {

using FolderDialogTest = FolderDialogFixture;
using WindowProgramTest = WindowProgramFixture;

} // namespace

TEST_F(FolderDialogTest, AnswersTheFolderThatThePersonChooses) {
    auto const requestId = client.send("selectOutputFolder");
    ASSERT_TRUE(isOpen());
    EXPECT_TRUE(client.answers(requestId).empty());
    ASSERT_TRUE(isAnsweredBy(choose, requestId));
    EXPECT_EQ(std::vector{Json(documents)}, client.answers(requestId));
    EXPECT_EQ(documents + "\n", outputOf("sqlite3 '" + folder / "store.sqlite" +
                                         "' \"SELECT value FROM settings WHERE key = 'outputFolder'\""));
}

TEST_F(FolderDialogTest, AnswersNullWhenThePersonChoosesNone) {
    auto const requestId = client.send("selectOutputFolder");
    ASSERT_TRUE(isOpen());
    ASSERT_TRUE(isAnsweredBy(cancel, requestId));
    EXPECT_EQ(std::vector{Json(nullptr)}, client.answers(requestId));
    EXPECT_TRUE(isClosed());
}

TEST_F(FolderDialogTest, LetsASecondRequestJoinAndAnswersOtherCommandsMeanwhile) {
    auto const first = client.send("selectOutputFolder");
    ASSERT_TRUE(isOpen());
    auto const second = client.send("selectOutputFolder");
    EXPECT_EQ(true, client.request("syncComment", {{"comment", {{"id", "a"}, {"seconds", 1}}}}));
    auto const dialogs = dialog();
    EXPECT_EQ(1, std::count(dialogs.begin(), dialogs.end(), '\n')) << dialogs;
    ASSERT_TRUE(isAnsweredBy(choose, second));
    EXPECT_EQ(std::vector{Json(documents)}, client.answers(first));
    EXPECT_EQ(std::vector{Json(documents)}, client.answers(second));
}

TEST_F(FolderDialogTest, OpensAgainAfterItWasClosed) {
    for (auto round = 0; round < 2; ++round) {
        auto const requestId = client.send("selectOutputFolder");
        ASSERT_TRUE(isOpen());
        ASSERT_TRUE(isAnsweredBy(cancel, requestId));
        ASSERT_TRUE(isClosed());
    }
}

TEST_F(WindowProgramTest, ExportsWhatItShowsIntoTheChosenFolder) {
    auto const file = documents + "/comments.csv";
    std::filesystem::remove(file);
    EXPECT_TRUE(happensAfter("ctrl+e", [&] { return std::filesystem::exists(file); }));
    EXPECT_EQ(std::string::npos, contentsOf(file).find("Logo")); // of another sequence
    std::filesystem::remove(file);
}

TEST_F(WindowProgramTest, ImportsTheFileThatThePersonChooses) {
    auto const file = folder / "comments.csv";
    writeFile(file, "seconds,text\n7,Too loud\n");
    ASSERT_TRUE(happensAfter("ctrl+o", [] { return !importDialog().empty(); }));
    auto const isImported = [this] {
        return outputOf("sqlite3 '" + folder / "store.sqlite" +
                        "' 'SELECT body FROM comments WHERE start_s = 7'") == "Too loud\n";
    };
    // A path that begins with a slash is typed over the list of files.
    auto nextTry = std::chrono::steady_clock::time_point{};
    EXPECT_TRUE(waitUntil([&] {
        if (isImported())
            return true;
        auto const now = std::chrono::steady_clock::now();
        if (now >= nextTry && !importDialog().empty()) {
            std::ignore = outputOf("xdotool windowfocus --sync " + importDialog() + " type '" + file +
                                   "' && xdotool key Return");
            nextTry = now + std::chrono::seconds{4};
        }
        return false;
    }));
    EXPECT_EQ("default\n",
              outputOf("sqlite3 '" + folder / "store.sqlite" +
                       "' 'SELECT key FROM sequences JOIN comments ON sequences.id = sequence_id "
                       "WHERE start_s = 7'"));
}

TEST(WithoutADisplay, RunsWithoutAWindow) {
    auto const display = std::string{std::getenv("DISPLAY")};
    ::unsetenv("DISPLAY");
    auto const folder = TemporaryFolder{};
    auto container = ContainerProcess{{"--database", folder / "store.sqlite"}};
    ::setenv("DISPLAY", display.c_str(), 1);
    ASSERT_TRUE(container.isReady());
    EXPECT_EQ("zelvix-container: there is no display; running without a window\n", container.complaints());
    auto client = BusClient{};
    EXPECT_EQ(nullptr, client.request("selectOutputFolder"));
    EXPECT_EQ(true, client.request("syncComment", {{"comment", {{"id", "a"}, {"seconds", 1}}}}));
}

} // namespace workbench
