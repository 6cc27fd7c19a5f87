#include "Workbench/ContainerApp/ContainerFixture.h"

#include <cstdlib>
#include <sys/stat.h>

namespace workbench {

namespace {

using CommandsTest = ContainerFixture;

Json const yes = true;
Json const no = false;
Json const none = nullptr;

Json comment(std::string const& id, double seconds) {
    return {{"id", id}, {"seconds", seconds}, {"text", "text of " + id}};
}

// Makes a script the desktop's handler for links; it writes what it is given into a file.
class LinkHandler {
public:
    LinkHandler() {
        auto const data = std::string{std::getenv("XDG_DATA_HOME")} + "/applications";
        auto const config = std::string{std::getenv("XDG_CONFIG_HOME")};
        std::filesystem::create_directories(data);
        std::filesystem::create_directories(config);
        writeFile(folder / "open", "#!/bin/sh\nprintf %s \"$1\" > '" + folder / "part" + "'\nmv '" +
                                       folder / "part" + "' '" + folder / "opened" + "'\n");
        ::chmod((folder / "open").c_str(), 0700);
        writeFile(data + "/opener.desktop", "[Desktop Entry]\nType=Application\nName=Opener\nExec='" +
                                                folder / "open" +
                                                "' %u\nMimeType=x-scheme-handler/http;x-scheme-handler/https;"
                                                "x-scheme-handler/mailto;x-scheme-handler/ftp;\n");
        writeFile(
            config + "/mimeapps.list",
            "[Default "
            "Applications]\nx-scheme-handler/http=opener.desktop\nx-scheme-handler/https=opener.desktop\n"
            "x-scheme-handler/mailto=opener.desktop\nx-scheme-handler/ftp=opener.desktop\n");
    }

    ~LinkHandler() {
        std::filesystem::remove(std::string{std::getenv("XDG_DATA_HOME")} + "/applications/opener.desktop");
        std::filesystem::remove(std::string{std::getenv("XDG_CONFIG_HOME")} + "/mimeapps.list");
    }

    LinkHandler(LinkHandler const&) = delete;
    LinkHandler& operator=(LinkHandler const&) = delete;

    // What was opened last; it is forgotten then.
    std::string takeOpened() {
        auto const file = folder / "opened";
        if (!waitUntil([&] { return std::filesystem::exists(file); }))
            return "nothing";
        auto const link = contentsOf(file);
        std::filesystem::remove(file);
        return link;
    }

    [[nodiscard]] std::string names() const { return folder.names(); }

private:
    TemporaryFolder folder;
};

} // namespace

TEST_F(CommandsTest, SyncCommentKeepsAComment) {
    EXPECT_EQ(yes, sync(comment("a", 12.5)));
    EXPECT_EQ("a|12.5|text of a\n", sql("SELECT id, start_s, body FROM comments"));
}

TEST_F(CommandsTest, SyncCommentKeepsThePagesMessageWithoutItsEnvelope) {
    auto message = comment("a", 12.5);
    message["command"] = "syncComment";
    message["resolveId"] = "7";
    message["drawing"] = {{"points", {1, 2, 3}}, {"filled", false}, {"label", nullptr}};
    EXPECT_EQ(yes, sync(message));
    auto kept = message;
    kept.erase("command");
    kept.erase("resolveId");
    EXPECT_EQ(kept, Json::parse(sql("SELECT raw FROM comments")));
}

TEST_F(CommandsTest, SyncCommentRefusesWhatHasNoIdentifierOrTime) {
    EXPECT_EQ(no, sync({{"seconds", 1}}));
    EXPECT_EQ(no, sync({{"id", "a"}}));
    EXPECT_EQ(no, sync({{"id", "a"}, {"seconds", "1"}}));
    EXPECT_EQ(no, sync({{"id", "a"}, {"seconds", -1}}));
    EXPECT_EQ(no, sync("a"));
    EXPECT_EQ(no, sync(nullptr));
    EXPECT_EQ(no, client.request("syncComment"));
    EXPECT_EQ("0\n", sql("SELECT count(*) FROM comments"));
}

TEST_F(CommandsTest, DeleteCommentIsTrueAlsoForUnknownOnes) {
    ASSERT_EQ(yes, sync(comment("a", 1)));
    EXPECT_EQ(yes, client.request("deleteComment", {{"commentId", "a"}}));
    EXPECT_EQ(yes, client.request("deleteComment", {{"commentId", "a"}}));
    EXPECT_EQ(yes, client.request("deleteComment", {{"commentId", "never heard of"}}));
    EXPECT_EQ("0\n", sql("SELECT count(*) FROM comments"));
}

TEST_F(CommandsTest, DeleteCommentRefusesWhatIsNoIdentifier) {
    EXPECT_EQ(no, client.request("deleteComment"));
    EXPECT_EQ(no, client.request("deleteComment", {{"commentId", ""}}));
    EXPECT_EQ(no, client.request("deleteComment", {{"commentId", Json::array({"a"})}}));
    EXPECT_EQ(no, client.request("deleteComment", {{"commentId", nullptr}}));
}

TEST_F(CommandsTest, SyncAllCommentsReplacesTheList) {
    ASSERT_EQ(yes, sync(comment("a", 1)));
    EXPECT_EQ(yes, client.request("syncAllComments", {{"comments", {comment("b", 2), comment("c", 1)}}}));
    EXPECT_EQ("b\nc\n", sql("SELECT id FROM comments ORDER BY position"));
    EXPECT_EQ(yes, client.request("syncAllComments", {{"comments", Json::array()}}));
    EXPECT_EQ("0\n", sql("SELECT count(*) FROM comments"));
}

TEST_F(CommandsTest, SyncAllCommentsKeepsTwentyThousandAtOnce) {
    auto list = Json::array();
    for (auto number = 0; number < 20'000; ++number)
        list.push_back({{"id", "comment-" + std::to_string(number)},
                        {"seconds", 1.5 * number},
                        {"author", "A. Reviewer"},
                        {"text", "The grade drifts here, compare with the take before."}});
    EXPECT_EQ(true, client.request("syncAllComments", {{"comments", list}}));
    EXPECT_EQ("20000\n", sql("SELECT count(*) FROM comments"));
    EXPECT_EQ(20'000U, client.markers("default")["markers"].size());
    EXPECT_TRUE(waitUntil([&] {
        auto const line = container->output().find("syncAllComments req-");
        return line != std::string::npos && container->output().find(" ms)", line) != std::string::npos;
    }));
}

TEST_F(CommandsTest, SyncAllCommentsKeepsTheOldListWhenOneEntryIsInvalid) {
    ASSERT_EQ(yes, sync(comment("a", 1)));
    for (auto const& entry :
         {Json{{"id", "x"}}, Json{{"seconds", 1}}, Json("x"), Json(nullptr), comment("b", 2)})
        EXPECT_EQ(no, client.request("syncAllComments", {{"comments", {comment("b", 2), entry}}})) << entry;
    EXPECT_EQ(no, client.request("syncAllComments", {{"comments", "b"}}));
    EXPECT_EQ(no, client.request("syncAllComments"));
    EXPECT_EQ("a\n", sql("SELECT id FROM comments"));
}

TEST_F(CommandsTest, ClearAllMarkersEmptiesTheActiveSequence) {
    ASSERT_EQ(yes, sync(comment("a", 1)));
    auto elsewhere = comment("b", 1);
    elsewhere["sequenceId"] = "other";
    ASSERT_EQ(yes, sync(elsewhere));
    EXPECT_EQ(yes, client.request("clearAllMarkers"));
    EXPECT_EQ(yes, client.request("clearAllMarkers"));
    EXPECT_EQ("b\n", sql("SELECT id FROM comments"));
}

TEST_F(CommandsTest, GetMarkerAtTimeDescribesTheMarker) {
    auto marked = comment("a", 12.5);
    marked["duration"] = 2;
    marked["author"] = {{"name", "Ana"}};
    marked["color"] = "#f2762e";
    marked["completed"] = true;
    marked["replies"] = {{{"id", "r"}, {"text", "yes"}, {"author", "Ben"}}};
    ASSERT_EQ(yes, sync(marked));
    auto const expected =
        Json{{"id", "a"},
             {"text", "text of a"},
             {"author", "Ana"},
             {"start", 12.5},
             {"duration", 2.0},
             {"colour", "#f2762e"},
             {"resolved", true},
             {"replies", {{{"id", "r"}, {"parentId", "a"}, {"text", "yes"}, {"author", "Ben"}}}}};
    EXPECT_EQ(expected, markerAt(14.9));
}

TEST_F(CommandsTest, GetMarkerAtTimeIsNullWithoutAMarker) {
    ASSERT_EQ(yes, sync(comment("a", 12.5)));
    EXPECT_EQ(none, markerAt(20));
    EXPECT_EQ(none, client.request("getMarkerAtTime"));
    EXPECT_EQ(none, client.request("getMarkerAtTime", {{"seconds", "12.5"}}));
    EXPECT_EQ(none, client.request("getMarkerAtTime", {{"seconds", true}}));
    EXPECT_EQ(none,
              client.request("getMarkerAtTime", {{"seconds", std::numeric_limits<double>::quiet_NaN()}}));
}

TEST_F(CommandsTest, GetMarkerAtTimeHasAToleranceOfItsOwn) {
    ASSERT_EQ(yes, sync(comment("a", 12.5)));
    EXPECT_EQ("a", client.request("getMarkerAtTime", {{"seconds", 13}}).at("id"));
    EXPECT_EQ(none, client.request("getMarkerAtTime", {{"seconds", 13.1}}));
}

TEST_F(CommandsTest, OpenURLHandsLinksToTheDesktop) {
    auto handler = LinkHandler{};
    for (auto const* link :
         {"https://review.example.com/a?b=%zz#c", "HTTP://example.com", "mailto:ana@example.com"}) {
        EXPECT_EQ(yes, client.request("openURL", {{"url", link}})) << link;
        EXPECT_EQ(link, handler.takeOpened());
    }
}

TEST_F(CommandsTest, OpenURLOpensNothingElse) {
    auto handler = LinkHandler{};
    for (auto const* link :
         {"ftp://example.com/", "file:///etc/passwd", "javascript:alert(1)", "about:blank", "/etc/passwd",
          "example.com", "", "http:", "http://", "http:///etc/passwd", "https:evil", " https://example.com",
          "https://example.com/\nX", "data:text/html,x", "x-scheme:y", "httpx://example.com"})
        EXPECT_EQ(no, client.request("openURL", {{"url", link}})) << link;
    EXPECT_EQ(no, client.request("openURL", {{"url", 7}}));
    EXPECT_EQ(no, client.request("openURL"));
    EXPECT_EQ(yes, client.request("openURL", {{"url", "https://example.com/last"}}));
    EXPECT_EQ("https://example.com/last", handler.takeOpened());
    EXPECT_EQ("open", handler.names());
}

TEST_F(CommandsTest, OpenURLIsFalseWhenNothingOpensLinks) {
    EXPECT_EQ(no, client.request("openURL", {{"url", "https://example.com/"}}));
}

TEST_F(CommandsTest, SelectOutputFolderIsNullWithoutAWindow) {
    EXPECT_EQ(none, client.request("selectOutputFolder"));
}

TEST_F(CommandsTest, UnknownCommandsAreAnsweredFalse) {
    EXPECT_EQ(no, client.request("makeCoffee"));
    EXPECT_EQ(no, client.request("synccomment", {{"comment", comment("a", 1)}}));
    EXPECT_EQ(no, client.request(""));
    EXPECT_EQ("0\n", sql("SELECT count(*) FROM comments"));
}

TEST_F(CommandsTest, AnswersManyCommandsEachUnderItsOwnIdentifier) {
    auto sent = std::vector<std::string>{};
    for (auto number = 0; number < 500; ++number)
        sent.push_back(client.send("syncComment", {{"comment", comment(std::to_string(number), number)}}));
    ASSERT_TRUE(client.waitFor([&] { return !client.answers(sent.back()).empty(); }));
    client.settle();
    EXPECT_EQ(500U, client.answerCount());
    for (auto const& requestId : sent)
        EXPECT_EQ(std::vector{yes}, client.answers(requestId));
    EXPECT_EQ("500\n", sql("SELECT count(*) FROM comments"));
}

TEST_F(CommandsTest, FollowsTheEditorsActiveSequence) {
    auto editor = EditorDouble{sequenceNamed("one")};
    ASSERT_TRUE(editor.waitFor([&] { return editor.questions() == 1; }));
    EXPECT_EQ(yes, sync(comment("a", 1)));
    editor.setSequence(sequenceNamed("two"), EditorDouble::News::WithValue);
    client.settle();
    EXPECT_EQ(none, markerAt(1));
    EXPECT_EQ(yes, sync(comment("b", 1)));
    editor.setSequence(sequenceNamed("one"), EditorDouble::News::WithValue);
    client.settle();
    EXPECT_EQ("a", markerAt(1).at("id"));
    EXPECT_EQ("a|one|24000|1001|Reel one\nb|two|24000|1001|Reel two\n",
              sql("SELECT c.id, s.key, rate_num, rate_den, name FROM comments c JOIN sequences s ON s.id = "
                  "sequence_id "
                  "ORDER BY c.id"));
}

TEST_F(CommandsTest, AsksAnEditorThatTellsOnlyThatSomethingChanged) {
    auto editor = EditorDouble{sequenceNamed("one")};
    ASSERT_TRUE(editor.waitFor([&] { return editor.questions() == 1; }));
    editor.setSequence(sequenceNamed("two"), EditorDouble::News::WithoutValue);
    ASSERT_TRUE(editor.waitFor([&] { return editor.questions() == 2; }));
    EXPECT_EQ(yes, sync(comment("b", 1)));
    EXPECT_EQ("two\n", sql("SELECT key FROM sequences"));
}

TEST_F(CommandsTest, HoldsCommandsUntilTheEditorHasToldItsSequence) {
    auto editor = EditorDouble{sequenceNamed("one")};
    client.settle();
    auto const first = client.send("syncComment", {{"comment", comment("a", 1)}});
    std::ignore = client.send("deleteComment", {{"commentId", "a"}});
    client.settle();
    EXPECT_EQ(0U, client.answerCount());
    ASSERT_TRUE(editor.waitFor([&] { return editor.questions() == 1; }));
    ASSERT_TRUE(client.waitFor([&] { return client.answerCount() == 2; }));
    EXPECT_EQ(std::vector{yes}, client.answers(first));
    EXPECT_EQ("one|2\n", sql("SELECT key, revision FROM sequences"));
}

TEST_F(CommandsTest, GoesOnWhenAnEditorGoesBeforeItHasAnswered) {
    auto requestId = std::string{};
    {
        auto const editor = EditorDouble{sequenceNamed("one")};
        client.settle();
        requestId = client.send("syncComment", {{"comment", comment("a", 1)}});
        client.settle();
        EXPECT_EQ(0U, client.answerCount());
    }
    ASSERT_TRUE(client.waitFor([&] { return client.answerCount() == 1; }));
    EXPECT_EQ("default\n", sql("SELECT key FROM sequences"));
}

TEST_F(CommandsTest, FallsBackToTheDefaultListWithoutASequence) {
    auto editor = EditorDouble{std::nullopt};
    ASSERT_TRUE(editor.waitFor([&] { return editor.questions() == 1; }));
    EXPECT_EQ(yes, sync(comment("a", 1)));
    EXPECT_EQ("default\n", sql("SELECT key FROM sequences"));
}

} // namespace workbench
