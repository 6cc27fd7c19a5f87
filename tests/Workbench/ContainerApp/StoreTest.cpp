#include "Workbench/ContainerApp/Store.h"
#include "Workbench/ContainerApp/CommentReader.h"
#include "Workbench/ContainerApp/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace workbench {

namespace {

CommentDraft draft(Json const& value) {
    return readComment(value).value();
}

std::vector<CommentDraft> drafts(Json const& list) {
    return readComments(list).value();
}

HostSequence sequenceNamed(std::string const& key) {
    auto sequence = HostSequence{};
    sequence.key = key;
    sequence.name = "Reel " + key;
    sequence.uri = "file:///" + key;
    sequence.rate = FrameRate{24000, 1001};
    sequence.durationFrames = 480;
    sequence.firstFrame = 86'400;
    sequence.dropFrame = true;
    return sequence;
}

class StoreTest : public testing::Test {
protected:
    StoreTest() { open(); }

    void open() {
        store.reset();
        store = std::make_unique<Store>(file);
        store->comments.setObserver([this](std::string const& key, std::uint64_t revision) {
            news += key + std::to_string(revision) + " ";
        });
    }

    std::string ids(std::string const& key = defaultSequence) {
        auto text = std::string{};
        for (auto const& comment : store->comments.comments(key))
            text += (text.empty() ? "" : " ") + comment.id;
        return text;
    }

    Comment only(std::string const& key = defaultSequence) {
        auto const comments = store->comments.comments(key);
        EXPECT_EQ(1U, comments.size());
        return comments.at(0);
    }

    std::string sql(std::string const& query) {
        auto statement = Statement{store->database, query};
        auto rows = statement.query();
        return rows.next() ? rows.text(0) : "nothing";
    }

    bool sync(Json const& value) { return store->comments.sync(draft(value)); }

    TemporaryFolder folder;
    std::string file = folder / "deep/in/store.sqlite";
    std::unique_ptr<Store> store;
    std::string news;
};

} // namespace

TEST_F(StoreTest, KeepsACommentOverARestart) {
    ASSERT_TRUE(sync({{"id", "a"},
                      {"seconds", 12.5},
                      {"duration", 2},
                      {"text", "Logo too small"},
                      {"author", {{"name", "Ana"}}},
                      {"color", "#f2762e"},
                      {"resolved", true},
                      {"drawing", {1, 2}}}));
    open();
    auto const comment = only();
    EXPECT_EQ("a", comment.id);
    EXPECT_EQ(12.5, comment.start);
    EXPECT_EQ(2, comment.duration);
    EXPECT_EQ("Logo too small", comment.text);
    EXPECT_EQ("Ana", comment.author);
    EXPECT_EQ("#f2762e", comment.colour);
    EXPECT_TRUE(comment.resolved);
    EXPECT_EQ("[1,2]", sql("SELECT json_extract(raw, '$.drawing') FROM comments"));
}

TEST_F(StoreTest, ReplacesACommentByItsIdentifier) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}, {"text", "one"}, {"color", "red"}}));
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 2}, {"text", "two"}}));
    EXPECT_EQ("two", only().text);
    EXPECT_EQ(2, only().start);
    EXPECT_EQ(std::nullopt, only().colour);
}

TEST_F(StoreTest, KeepsTheDayOfTheFirstArrival) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}, {"createdAt", "2024-01-01T00:00:00Z"}}));
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 2}}));
    EXPECT_EQ("2024-01-01T00:00:00Z", sql("SELECT created_at FROM comments"));
    ASSERT_TRUE(store->comments.syncAll(drafts({{{"id", "a"}, {"seconds", 2}}})));
    EXPECT_EQ("2024-01-01T00:00:00Z", sql("SELECT created_at FROM comments"));
    EXPECT_NE("2024-01-01T00:00:00Z", sql("SELECT updated_at FROM comments"));
}

TEST_F(StoreTest, TakesTheDatesThatThePageGives) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}, {"createdAt", "then"}, {"updatedAt", "later"}}));
    EXPECT_EQ("then later", sql("SELECT created_at || ' ' || updated_at FROM comments"));
}

TEST_F(StoreTest, RefusesACommentWithoutATimeAndChangesNothing) {
    EXPECT_FALSE(sync({{"id", "a"}, {"text", "when?"}}));
    EXPECT_EQ("", ids());
    EXPECT_EQ("", news);
    EXPECT_EQ("0", sql("SELECT count(*) FROM sequences"));
}

TEST_F(StoreTest, PutsAReplyToItsParent) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 3}, {"updatedAt", "long ago"}}));
    ASSERT_TRUE(sync({{"id", "r"}, {"parentId", "a"}, {"text", "yes"}}));
    EXPECT_EQ(1U, store->comments.markers(defaultSequence).size());
    auto const replies = store->comments.replies(*store->sequences.find(defaultSequence), "a");
    ASSERT_EQ(1U, replies.size());
    EXPECT_EQ("yes", replies[0].text);
    EXPECT_EQ(3, replies[0].start);
    EXPECT_NE("long ago", sql("SELECT updated_at FROM comments WHERE id = 'a'"));
}

TEST_F(StoreTest, RefusesAReplyWithoutATimeToAnUnknownComment) {
    EXPECT_FALSE(sync({{"id", "r"}, {"parentId", "a"}}));
    EXPECT_TRUE(sync({{"id", "r"}, {"parentId", "a"}, {"seconds", 3}}));
}

TEST_F(StoreTest, ReplacesTheRepliesThatComeWithAComment) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 3}, {"replies", {{{"id", "r1"}}, {{"id", "r2"}}}}}));
    ASSERT_TRUE(sync({{"id", "s"}, {"parentId", "r2"}, {"text", "hangs from r2"}}));
    EXPECT_EQ("a r1 r2 s", ids());
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 3}, {"replies", {{{"id", "r1"}}, {{"id", "r3"}}}}}));
    EXPECT_EQ("a r1 r3", ids());
}

TEST_F(StoreTest, KeepsRepliesThatACommentDoesNotMention) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 3}, {"replies", {{{"id", "r1"}}}}}));
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 4}}));
    EXPECT_EQ("r1 a", ids());
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 4}, {"replies", Json::array()}}));
    EXPECT_EQ("a", ids());
}

TEST_F(StoreTest, FindsAllThatAnswersACommentHoweverDeep) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 3}}));
    auto parent = std::string{"a"};
    for (auto number = 1; number < 100; ++number) {
        auto const id = std::to_string(number);
        ASSERT_TRUE(sync({{"id", id}, {"parentId", parent}}));
        parent = id;
    }
    EXPECT_EQ(99U, store->comments.replies(*store->sequences.find(defaultSequence), "a").size());
}

TEST_F(StoreTest, SurvivesRepliesThatRunInACircle) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 3}}));
    ASSERT_TRUE(sync({{"id", "b"}, {"seconds", 3}, {"parentId", "a"}}));
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 3}, {"parentId", "b"}}));
    EXPECT_EQ(1U, store->comments.replies(*store->sequences.find(defaultSequence), "a").size());
    store->comments.remove("b");
    EXPECT_EQ("", ids());
}

TEST_F(StoreTest, DeletesACommentWithAllThatAnswersIt) {
    ASSERT_TRUE(
        sync({{"id", "a"}, {"seconds", 3}, {"replies", {{{"id", "r"}, {"replies", {{{"id", "s"}}}}}}}}));
    ASSERT_TRUE(sync({{"id", "b"}, {"seconds", 4}}));
    store->comments.remove("a");
    EXPECT_EQ("b", ids());
}

TEST_F(StoreTest, DeletesNothingForAnUnknownIdentifier) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 3}}));
    news.clear();
    store->comments.remove("z");
    EXPECT_EQ("a", ids());
    EXPECT_EQ("", news);
}

TEST_F(StoreTest, ReplacesTheWholeList) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}}));
    ASSERT_TRUE(sync({{"id", "b"}, {"seconds", 2}, {"replies", {{{"id", "r"}}}}}));
    ASSERT_TRUE(
        store->comments.syncAll(drafts({{{"id", "c"}, {"seconds", 3}}, {{"id", "b"}, {"seconds", 1}}})));
    EXPECT_EQ("b c", ids());
    ASSERT_TRUE(store->comments.syncAll({}));
    EXPECT_EQ("", ids());
}

TEST_F(StoreTest, KeepsTheOrderOfTheList) {
    ASSERT_TRUE(store->comments.syncAll(drafts(
        {{{"id", "z"}, {"seconds", 1}}, {{"id", "a"}, {"seconds", 1}}, {{"id", "m"}, {"seconds", 1}}})));
    EXPECT_EQ("z a m", ids());
    ASSERT_TRUE(sync({{"id", "b"}, {"seconds", 1}}));
    ASSERT_TRUE(sync({{"id", "z"}, {"seconds", 1}, {"text", "corrected"}}));
    EXPECT_EQ("z a m b", ids());
}

TEST_F(StoreTest, ReplacesTheListWholeOrNotAtAll) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}}));
    news.clear();
    EXPECT_FALSE(store->comments.syncAll(drafts({{{"id", "b"}, {"seconds", 1}}, {{"id", "c"}}})));
    EXPECT_FALSE(
        store->comments.syncAll(drafts({{{"id", "b"}, {"seconds", 1}}, {{"id", "b"}, {"seconds", 2}}})));
    EXPECT_FALSE(store->comments.syncAll(drafts(
        {{{"id", "b"}, {"seconds", 1}, {"sequenceId", "one"}}, {{"id", "c"}, {"sequenceId", "two"}}})));
    EXPECT_EQ("a", ids());
    EXPECT_EQ("", ids("one"));
    EXPECT_EQ("", news);
}

TEST_F(StoreTest, PutsCommentsWhereThePageWantsThem) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}, {"sequenceId", "one"}}));
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 2}}));
    EXPECT_EQ(1, only("one").start);
    EXPECT_EQ(2, only().start);
    ASSERT_TRUE(store->comments.syncAll(drafts({{{"id", "b"}, {"seconds", 1}, {"sequenceId", "one"}},
                                                {{"id", "b"}, {"seconds", 1}, {"sequenceId", "two"}}})));
    EXPECT_EQ("b", ids("one"));
    EXPECT_EQ("b", ids("two"));
    EXPECT_EQ("a", ids());
}

TEST_F(StoreTest, PutsCommentsIntoTheActiveSequence) {
    store->sequences.setActive(sequenceNamed("one"));
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}}));
    store->sequences.setActive(sequenceNamed("two"));
    ASSERT_TRUE(sync({{"id", "b"}, {"seconds", 1}}));
    store->comments.remove("a");
    store->comments.clear();
    EXPECT_EQ("a", ids("one"));
    EXPECT_EQ("", ids("two"));
    EXPECT_EQ("", ids());
}

TEST_F(StoreTest, FindsForADeletionWhatThePageHadPlacedItself) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}, {"sequenceId", "one"}, {"replies", {{{"id", "r"}}}}}));
    store->comments.remove("r");
    EXPECT_EQ("a", ids("one"));
    store->comments.remove("a");
    EXPECT_EQ("", ids("one"));
}

TEST_F(StoreTest, FindsForAReplyWhatThePageHadPlacedItself) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 5}, {"sequenceId", "one"}}));
    ASSERT_TRUE(sync({{"id", "r"}, {"parentId", "a"}}));
    EXPECT_EQ("a r", ids("one"));
}

TEST_F(StoreTest, DeletesNothingWhenThePlaceIsInDoubt) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}, {"sequenceId", "one"}}));
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}, {"sequenceId", "two"}}));
    store->comments.remove("a");
    EXPECT_EQ("a", ids("one"));
    EXPECT_EQ("a", ids("two"));
}

TEST_F(StoreTest, NeverDeletesInAnotherSequenceOfTheEditor) {
    store->sequences.setActive(sequenceNamed("one"));
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}}));
    store->sequences.setActive(sequenceNamed("two"));
    store->comments.remove("a");
    store->sequences.setActive({});
    store->comments.remove("a");
    EXPECT_EQ("a", ids("one"));
}

TEST_F(StoreTest, CountsAndTellsEachWrite) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}}));
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}}));
    store->comments.remove("a");
    store->comments.clear();
    ASSERT_TRUE(sync({{"id", "b"}, {"seconds", 1}, {"sequenceId", "one"}}));
    EXPECT_EQ("default1 default2 default3 one1 ", news);
    EXPECT_EQ(3U, store->sequences.revision(defaultSequence));
    EXPECT_EQ(0U, store->sequences.revision("never heard of"));
}

TEST_F(StoreTest, RemembersWhatTheEditorSaidOfASequence) {
    store->sequences.setActive(sequenceNamed("one"));
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}}));
    store->sequences.setActive({});
    open();
    EXPECT_EQ(sequenceNamed("one"), store->sequences.description("one"));
}

TEST_F(StoreTest, FollowsTheEditorWhenASequenceChanges) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}, {"sequenceId", "one"}}));
    auto renamed = sequenceNamed("one");
    renamed.name = "Second cut";
    store->sequences.setActive(renamed);
    store->sequences.setActive({});
    EXPECT_EQ("Second cut", store->sequences.description("one")->name);
}

TEST_F(StoreTest, KeepsNoSequenceThatHasNoComments) {
    store->sequences.setActive(sequenceNamed("one"));
    EXPECT_EQ("0", sql("SELECT count(*) FROM sequences"));
    EXPECT_EQ("Reel one", store->sequences.description("one")->name);
}

TEST_F(StoreTest, CountsTheCommentsOfAllSequences) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}, {"replies", {{{"id", "r"}}}}}));
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}, {"sequenceId", "one"}}));
    EXPECT_EQ(3, store->comments.count());
}

TEST_F(StoreTest, RemembersSettings) {
    EXPECT_EQ(std::nullopt, store->settings.value("outputFolder"));
    store->settings.set("outputFolder", "/tmp/a");
    store->settings.set("outputFolder", "/tmp/b");
    open();
    EXPECT_EQ("/tmp/b", store->settings.value("outputFolder"));
}

TEST_F(StoreTest, PutsDownAsFailedWhatAKilledProgramLeftRunning) {
    std::ignore = store->exports.begin(std::nullopt, "csv");
    auto const done = store->exports.begin(std::nullopt, "csv");
    store->exports.finish(done, ExportState::Done, "/tmp/x.csv", "");
    open();
    auto const records = store->exports.newest(10);
    ASSERT_EQ(2U, records.size());
    EXPECT_EQ(ExportState::Done, records[0].state);
    EXPECT_EQ("/tmp/x.csv", records[0].path);
    EXPECT_EQ(ExportState::Failed, records[1].state);
    EXPECT_NE("", records[1].detail);
}

TEST_F(StoreTest, LosesNothingWhenTheDiskIsFull) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}}));
    news.clear();
    store->database.execute("PRAGMA max_page_count = " + sql("PRAGMA page_count"));
    auto const large = std::string(1'000'000, 'x');
    EXPECT_THROW(sync({{"id", "b"}, {"seconds", 1}, {"text", large}}), DatabaseError);
    EXPECT_THROW(store->comments.syncAll(drafts({{{"id", "b"}, {"seconds", 1}, {"text", large}}})),
                 DatabaseError);
    EXPECT_EQ("a", ids());
    EXPECT_EQ("", news);
    store->database.execute("PRAGMA max_page_count = 1000000");
    EXPECT_TRUE(sync({{"id", "b"}, {"seconds", 1}, {"text", large}}));
    EXPECT_EQ("a b", ids());
}

TEST_F(StoreTest, KeepsTheFolderItMakesToItself) {
    auto const permissions = std::filesystem::status(folder / "deep/in").permissions();
    EXPECT_EQ(std::filesystem::perms::owner_all, permissions);
}

TEST_F(StoreTest, LeavesOneWholeFileBehind) {
    ASSERT_TRUE(sync({{"id", "a"}, {"seconds", 1}}));
    store.reset();
    EXPECT_EQ("a\n", outputOf("sqlite3 '" + file + "' 'SELECT id FROM comments'"));
    EXPECT_EQ("wal\n", outputOf("sqlite3 '" + file + "' 'PRAGMA journal_mode'"));
    EXPECT_FALSE(std::filesystem::exists(file + "-wal"));
}

TEST_F(StoreTest, HoldsEveryTableToItsTypes) {
    EXPECT_EQ("0", sql("SELECT count(*) FROM pragma_table_list WHERE type = 'table' AND schema = 'main' "
                       "AND name NOT LIKE 'sqlite_%' AND NOT strict"));
    EXPECT_THROW(
        store->database.execute("INSERT INTO exports(format, state, started_at) VALUES('csv', 'lost', '')"),
        DatabaseError);
}

} // namespace workbench
