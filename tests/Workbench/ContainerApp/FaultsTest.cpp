#include "Workbench/ContainerApp/ContainerFixture.h"

#include <csignal>
#include <systemd/sd-bus.h>

namespace workbench {

namespace {

class FaultsTest : public ContainerFixture {
protected:
    static Json comment(std::string const& id, double seconds) { return {{"id", id}, {"seconds", seconds}}; }

    // A list that is large enough to be written for a while.
    static Json largeList(std::string const& prefix) {
        auto list = Json::array();
        auto const text = std::string(1000, 'x');
        for (auto number = 0; number < 8000; ++number)
            list.push_back({{"id", prefix + std::to_string(number)}, {"seconds", number}, {"text", text}});
        return list;
    }

    [[nodiscard]] std::size_t logSize() const {
        auto error = std::error_code{};
        auto const size = std::filesystem::file_size(database + "-wal", error);
        return error ? 0 : size;
    }

    int exitCodeOf(std::vector<std::string> arguments, std::string& complaint,
                   ProcessLimits const& limits = {}) {
        auto process = ContainerProcess{std::move(arguments), limits};
        auto const code = process.wait();
        complaint = process.complaints();
        return code;
    }
};

// Fills the signal with something that is not one dictionary a{sv}.
using Fill = void (*)(sd_bus_message*);

} // namespace

TEST_F(FaultsTest, SaysNothingToWhatIsNoCommand) {
    for (auto const fill :
         {Fill{[](sd_bus_message*) {}},
          Fill{[](sd_bus_message* message) { sd_bus_message_append(message, "s", "syncComment"); }},
          Fill{[](sd_bus_message* message) { sd_bus_message_append(message, "a{ss}", 1, "requestId", "r"); }},
          Fill{[](sd_bus_message* message) {
              sd_bus_message_append(message, "a{sv}s", 1, "requestId", "s", "r", "more");
          }},
          Fill{[](sd_bus_message* message) { sd_bus_message_append(message, "v", "s", "r"); }}})
        client.sendSignal(fill);
    client.settle();
    EXPECT_EQ(0U, client.answerCount());
    EXPECT_EQ(true, sync(comment("a", 1)));
}

TEST_F(FaultsTest, SaysNothingToACommandWithoutAnIdentifier) {
    for (auto const& dictionary : {Json::object(), Json{{"command", "clearAllMarkers"}},
                                   Json{{"command", "clearAllMarkers"}, {"requestId", 7}},
                                   Json{{"command", "clearAllMarkers"}, {"requestId", nullptr}},
                                   Json{{"command", "clearAllMarkers"}, {"requestId", {{"id", "r"}}}}})
        client.sendDictionary(dictionary);
    client.settle();
    EXPECT_EQ(0U, client.answerCount());
}

TEST_F(FaultsTest, AnswersWhatHasAnIdentifierAndNoCommand) {
    client.sendDictionary({{"requestId", "r1"}});
    client.sendDictionary({{"requestId", "r2"}, {"command", 7}});
    client.sendDictionary({{"requestId", "r3"}, {"command", {"syncComment"}}});
    client.sendDictionary({{"requestId", ""}, {"command", "clearAllMarkers"}});
    client.settle();
    for (auto const* requestId : {"r1", "r2", "r3"})
        EXPECT_EQ(std::vector{Json(false)}, client.answers(requestId)) << requestId;
    EXPECT_EQ(std::vector{Json(true)}, client.answers(""));
}

TEST_F(FaultsTest, AnswersEachOfTwoCommandsWithOneIdentifier) {
    client.sendDictionary({{"requestId", "r"}, {"command", "syncComment"}, {"comment", comment("a", 1)}});
    client.sendDictionary({{"requestId", "r"}, {"command", "deleteComment"}});
    client.settle();
    EXPECT_EQ((std::vector{Json(true), Json(false)}), client.answers("r"));
}

TEST_F(FaultsTest, TakesTheFirstOfAKeyThatComesTwice) {
    client.sendSignal([](sd_bus_message* message) {
        sd_bus_message_append(message, "a{sv}", 5, "command", "s", "deleteComment", "requestId", "s", "r",
                              "commentId", "s", "a", "requestId", "s", "other", "command", "s",
                              "clearAllMarkers");
    });
    client.settle();
    EXPECT_EQ(1U, client.answerCount());
    EXPECT_EQ(std::vector{Json(true)}, client.answers("r"));
}

TEST_F(FaultsTest, LeavesOutWhatJsonCannotExpress) {
    client.sendSignal([](sd_bus_message* message) {
        sd_bus_message_append(message, "a{sv}", 3, "command", "s", "syncComment", "requestId", "s", "r",
                              "comment", "a{sv}", 8, "id", "s", "a", "seconds", "i", 12, "path", "o", "/a/b",
                              "pair", "(ii)", 1, 2, "byNumber", "a{is}", 1, 7, "x", "nothing", "g", "",
                              "type", "g", "as", "mixed", "av", 3, "s", "x", "o", "/", "y",
                              static_cast<unsigned char>(7));
    });
    client.settle();
    ASSERT_EQ(std::vector{Json(true)}, client.answers("r"));
    EXPECT_EQ((Json{{"id", "a"}, {"seconds", 12}, {"nothing", nullptr}, {"mixed", {"x", nullptr, 7}}}),
              Json::parse(sql("SELECT raw FROM comments")));
}

TEST_F(FaultsTest, TakesListsOfEveryPlainType) {
    client.sendSignal([](sd_bus_message* message) {
        sd_bus_message_append(message, "a{sv}", 3, "command", "s", "syncComment", "requestId", "s", "r",
                              "comment", "a{sv}", 6, "id", "s", "a", "seconds", "t", std::uint64_t{12},
                              "texts", "as", 2, "x", "y", "numbers", "ai", 2, 1, 2, "floats", "ad", 1, 0.5,
                              "names", "a{ss}", 1, "k", "v");
    });
    client.settle();
    ASSERT_EQ(std::vector{Json(true)}, client.answers("r"));
    EXPECT_EQ((Json{{"id", "a"},
                    {"seconds", 12},
                    {"texts", {"x", "y"}},
                    {"numbers", {1, 2}},
                    {"floats", {0.5}},
                    {"names", {{"k", "v"}}}}),
              Json::parse(sql("SELECT raw FROM comments")));
}

TEST_F(FaultsTest, KeepsACommentOfTenMegabytes) {
    auto const text = std::string(10'000'000, 'x');
    EXPECT_EQ(true, sync({{"id", "a"}, {"seconds", 1}, {"text", text}}));
    EXPECT_EQ(Json(text), markerAt(1).at("text"));
}

TEST_F(FaultsTest, LeavesOutRepliesThatWouldCutItOffFromTheBus) {
    auto const text = std::string(6'000'000, 'x');
    ASSERT_EQ(true, sync(comment("a", 1)));
    for (auto const* id : {"r1", "r2", "r3"})
        ASSERT_EQ(true, sync({{"id", id}, {"parentId", "a"}, {"text", text}}));
    EXPECT_EQ(1U, markerAt(1).at("replies").size());
}

TEST_F(FaultsTest, IsSilentAboutAMarkerThatNoAnswerCanHold) {
    auto const text = std::string(20'000'000, 'x');
    ASSERT_EQ(true, sync({{"id", "a"}, {"seconds", 1}, {"text", text}}));
    EXPECT_EQ(nullptr, markerAt(1));
    EXPECT_EQ(true, sync(comment("a", 1)));
    EXPECT_EQ("a", markerAt(1).at("id"));
}

TEST_F(FaultsTest, KeepsTheOldListWhenItIsKilledWhileItWritesANewOne) {
    ASSERT_EQ(true, client.request("syncAllComments", {{"comments", {comment("old", 1)}}}));
    auto killedInTime = 0;
    for (auto round = 0; round < 5; ++round) {
        auto const before = sql("SELECT count(*), min(substr(id, 1, 1)) FROM comments");
        auto const size = logSize();
        std::ignore = client.send("syncAllComments", {{"comments", largeList(std::to_string(round))}});
        // The log grows while the transaction is under way, long before it is committed.
        ASSERT_TRUE(waitUntil([&] { return logSize() > size + 1'000'000; }));
        container->signal(SIGKILL);
        ASSERT_EQ(-SIGKILL, container->wait());
        auto const after = sql("SELECT count(*), min(substr(id, 1, 1)) FROM comments");
        auto const isWritten = after == "8000|" + std::to_string(round) + "\n";
        EXPECT_TRUE(after == before || isWritten) << after;
        killedInTime += after == before ? 1 : 0;
        EXPECT_EQ("ok\n", sql("PRAGMA integrity_check"));
        startContainer();
        EXPECT_EQ(true, client.request("deleteComment", {{"commentId", "never heard of"}}));
    }
    EXPECT_GT(killedInTime, 0);
}

TEST_F(FaultsTest, KeepsWhatItHasAnsweredWhenItIsKilled) {
    for (auto number = 0; number < 50; ++number)
        ASSERT_EQ(true, sync(comment(std::to_string(number), number)));
    container->signal(SIGKILL);
    ASSERT_EQ(-SIGKILL, container->wait());
    startContainer();
    EXPECT_NE(std::string::npos, container->output().find(", 50 comments, ready in "));
    EXPECT_EQ("49", markerAt(49).at("id"));
}

TEST_F(FaultsTest, EndsInOrderWhenItIsToldTo) {
    ASSERT_EQ(true, sync(comment("a", 1)));
    container->signal(SIGTERM);
    EXPECT_EQ(0, container->wait());
    EXPECT_EQ("store.sqlite", folder.names());
    EXPECT_EQ("a\n", sql("SELECT id FROM comments"));
}

TEST_F(FaultsTest, AnswersWhatHasArrivedBeforeItEnds) {
    constexpr auto many = 2000U; // more than a socket holds
    container->signal(SIGSTOP);
    auto last = std::string{};
    for (auto number = 0U; number < many; ++number)
        last = client.send("syncComment", {{"comment", comment(std::to_string(number), number)}});
    // The bus has passed everything on once it answers us.
    std::ignore = client.connection().requestName("com.zelvix.fcp.Test");
    container->signal(SIGTERM);
    container->signal(SIGCONT);
    EXPECT_EQ(0, container->wait());
    ASSERT_TRUE(client.waitFor([&] { return !client.answers(last).empty(); }));
    EXPECT_EQ(many, client.answerCount());
    EXPECT_EQ(std::to_string(many) + "\n", sql("SELECT count(*) FROM comments"));
}

TEST_F(FaultsTest, FinishesAnExportBeforeItEnds) {
    ASSERT_EQ(true, client.request("syncAllComments", {{"comments", largeList("a")}}));
    auto const exports = folder / "exports";
    std::filesystem::create_directory(exports);
    auto const requestId = client.send("startExport", {{"format", "csv"}, {"folder", exports}});
    ASSERT_TRUE(client.waitFor([&] { return !client.answers(requestId).empty(); }));
    container->signal(SIGTERM);
    EXPECT_EQ(0, container->wait());
    EXPECT_EQ(std::vector{Json(true)}, client.answers(requestId));
    EXPECT_EQ("done\n", sql("SELECT state FROM exports"));
    EXPECT_TRUE(std::filesystem::exists(exports + "/comments.csv"));
    EXPECT_EQ("8001\n", outputOf("python3 -c \"import csv; print(sum(1 for row in csv.reader(open('" +
                                 exports + "/comments.csv', newline=''))))\""));
}

TEST_F(FaultsTest, CancelsAnExport) {
    ASSERT_EQ(true, client.request("syncAllComments", {{"comments", largeList("a")}}));
    auto const exports = folder / "exports";
    std::filesystem::create_directory(exports);
    EXPECT_EQ(false, client.request("cancelExport"));
    auto const started = client.send("startExport", {{"format", "csv"}, {"folder", exports}});
    auto const cancelled = client.send("cancelExport");
    ASSERT_TRUE(client.waitFor([&] { return !client.answers(cancelled).empty(); }));
    EXPECT_EQ(std::vector{Json(true)}, client.answers(started));
    EXPECT_EQ(std::vector{Json(true)}, client.answers(cancelled));
    EXPECT_TRUE(std::filesystem::is_empty(exports));
    EXPECT_EQ("cancelled\n", sql("SELECT state FROM exports"));
}

TEST_F(FaultsTest, RefusesASecondInstance) {
    auto complaint = std::string{};
    EXPECT_EQ(3, exitCodeOf({"--no-window", "--database", database}, complaint));
    EXPECT_EQ("zelvix-container: another one is running already\n", complaint);
    EXPECT_EQ(true, sync(comment("a", 1)));
}

TEST_F(FaultsTest, RefusesANewerDatabaseAndLeavesItUntouched) {
    container.reset();
    std::ignore = sql("PRAGMA wal_checkpoint(TRUNCATE); PRAGMA user_version = 99");
    auto const before = contentsOf(database);
    auto complaint = std::string{};
    EXPECT_EQ(5, exitCodeOf({"--no-window", "--database", database}, complaint));
    EXPECT_EQ("zelvix-container: " + database +
                  ": the database was written by a newer version of this program "
                  "(version 99, this one knows 1); it is left as it is\n",
              complaint);
    EXPECT_EQ(before, contentsOf(database));
}

TEST_F(FaultsTest, SaysWhyADatabaseCannotBeOpened) {
    container.reset();
    auto complaint = std::string{};
    EXPECT_EQ(5, exitCodeOf({"--no-window", "--database", "/proc/nowhere/x.sqlite"}, complaint));
    EXPECT_EQ(
        "zelvix-container: /proc/nowhere/x.sqlite: cannot open /proc/nowhere/x.sqlite: unable to open "
        "database file; let this user write the file and its folder, or take another one with --database\n",
        complaint);
    std::filesystem::create_directory(folder / "closed");
    std::filesystem::permissions(folder / "closed",
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    EXPECT_EQ(5, exitCodeOf({"--no-window", "--database", folder / "closed/x.sqlite"}, complaint,
                            {.obeysPermissions = true, .fileSize = {}, .disk = {}}));
    std::filesystem::permissions(database, std::filesystem::perms::owner_read);
    EXPECT_EQ(5, exitCodeOf({"--no-window", "--database", database}, complaint,
                            {.obeysPermissions = true, .fileSize = {}, .disk = {}}));
    EXPECT_EQ("zelvix-container: " + database + ": cannot write " + database +
                  "; let this user write the file and its folder, or take another one with --database\n",
              complaint);
}

TEST_F(FaultsTest, SaysWhatIsWrongWithItsArguments) {
    auto complaint = std::string{};
    EXPECT_EQ(2, exitCodeOf({"--frobnicate"}, complaint));
    EXPECT_EQ(0U, complaint.find("zelvix-container: unknown argument --frobnicate\nUsage: "));
}

TEST_F(FaultsTest, LosesNothingWhenTheDiskIsFull) {
    ASSERT_EQ(true, sync(comment("a", 1)));
    startContainer({.obeysPermissions = false, .fileSize = 200'000, .disk = {}});
    EXPECT_EQ(false, client.request("syncAllComments", {{"comments", largeList("b")}}));
    EXPECT_TRUE(complains("zelvix-container: syncAllComments failed: cannot use the database: "));
    EXPECT_EQ("a", markerAt(1).at("id"));
    EXPECT_EQ(true, sync(comment("c", 2)));
    startContainer();
    EXPECT_EQ("a\nc\n", sql("SELECT id FROM comments ORDER BY id"));
    EXPECT_EQ(true, client.request("syncAllComments", {{"comments", largeList("b")}}));
}

TEST_F(FaultsTest, RefusesToExportIntoAFolderThatItMayNotWrite) {
    startContainer({.obeysPermissions = true, .fileSize = {}, .disk = {}});
    std::filesystem::create_directory(folder / "closed");
    std::filesystem::permissions(folder / "closed",
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    EXPECT_EQ(false, client.request("startExport", {{"format", "csv"}, {"folder", folder / "closed"}}));
    EXPECT_TRUE(complains("zelvix-container: the export was not started: cannot write in " +
                          folder / "closed" + ": Permission denied\n"));
    EXPECT_EQ(false, client.request("startExport", {{"format", "avi"}, {"folder", folder.path()}}));
    EXPECT_TRUE(complains("the setting \"format\" is \"avi\", but it takes "));
    EXPECT_EQ("0\n", sql("SELECT count(*) FROM exports"));
}

TEST_F(FaultsTest, ReportsAnExportThatFillsTheDisk) {
    ASSERT_EQ(true, client.request("syncAllComments", {{"comments", largeList("a")}}));
    container->signal(SIGTERM); // unlike SIGKILL it leaves no large log, to which nothing could be added
    ASSERT_EQ(0, container->wait());
    startContainer({.obeysPermissions = false, .fileSize = 300'000, .disk = {}});
    auto const exports = folder / "exports";
    std::filesystem::create_directory(exports);
    EXPECT_EQ(true, client.request("startExport", {{"format", "csv"}, {"folder", exports}}));
    EXPECT_TRUE(complains("the export failed: cannot write comments.csv: File too large\n"))
        << container->complaints();
    EXPECT_TRUE(std::filesystem::is_empty(exports));
    EXPECT_EQ("failed\n", sql("SELECT state FROM exports"));
}

TEST_F(FaultsTest, SurvivesAFloodOfSignals) {
    for (auto number = 0; number < 20'000; ++number)
        client.sendDictionary({{"command", "clearAllMarkers"}});
    auto const requestId = client.send("syncComment", {{"comment", comment("a", 1)}});
    ASSERT_TRUE(client.waitFor([&] { return !client.answers(requestId).empty(); }));
    EXPECT_EQ(1U, client.answerCount());
}

} // namespace workbench
