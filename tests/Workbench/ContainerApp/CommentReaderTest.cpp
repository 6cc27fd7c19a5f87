#include "Workbench/ContainerApp/CommentReader.h"

#include <gtest/gtest.h>

#include <limits>

namespace workbench {

namespace {

Json comment(Json const& more = Json::object()) {
    auto value = Json{{"id", "c1"}, {"seconds", 12.5}};
    value.update(more);
    return value;
}

Comment read(Json const& more = Json::object()) {
    auto const draft = readComment(comment(more));
    EXPECT_TRUE(draft.has_value()) << more;
    return draft.value_or(CommentDraft{}).comment;
}

bool isComment(Json const& value) {
    return readComment(value).has_value();
}

} // namespace

TEST(CommentReader, TakesEverySpellingOfTheIdentifier) {
    EXPECT_EQ("a", readComment({{"id", "a"}, {"seconds", 1}})->comment.id);
    EXPECT_EQ("a", readComment({{"commentId", "a"}, {"seconds", 1}})->comment.id);
    EXPECT_EQ("a", readComment({{"commentId", "b"}, {"id", "a"}, {"seconds", 1}})->comment.id);
}

TEST(CommentReader, TakesEverySpellingOfTheTime) {
    for (auto const* key : {"seconds", "time", "start", "timestamp"}) {
        auto const draft = readComment({{"id", "a"}, {key, 12.5}});
        ASSERT_TRUE(draft) << key;
        EXPECT_TRUE(draft->hasStart) << key;
        EXPECT_EQ(12.5, draft->comment.start) << key;
    }
}

TEST(CommentReader, TakesEverySpellingOfTheText) {
    for (auto const* key : {"text", "body", "message"})
        EXPECT_EQ("Logo too small", read({{key, "Logo too small"}}).text) << key;
}

TEST(CommentReader, TakesEverySpellingOfTheColour) {
    EXPECT_EQ("#f2762e", read({{"color", "#f2762e"}}).colour);
    EXPECT_EQ("#f2762e", read({{"colour", "#f2762e"}}).colour);
    EXPECT_EQ(std::nullopt, read().colour);
}

TEST(CommentReader, TakesEverySpellingOfResolved) {
    EXPECT_TRUE(read({{"resolved", true}}).resolved);
    EXPECT_TRUE(read({{"completed", true}}).resolved);
    EXPECT_FALSE(read({{"resolved", false}}).resolved);
    EXPECT_FALSE(read().resolved);
}

TEST(CommentReader, TakesAnAuthorAsTextOrAsOneWithAName) {
    EXPECT_EQ("Ana", read({{"author", "Ana"}}).author);
    EXPECT_EQ("Ana", read({{"author", {{"name", "Ana"}, {"id", 7}}}}).author);
    EXPECT_EQ("", read({{"author", {{"id", 7}}}}).author);
}

TEST(CommentReader, TakesARangeAsItsDurationOrItsEnd) {
    EXPECT_EQ(2.5, read({{"duration", 2.5}}).duration);
    EXPECT_EQ(2.5, read({{"end", 15}}).duration);
    EXPECT_EQ(1.0, read({{"duration", 1}, {"end", 15}}).duration);
    EXPECT_EQ(0.0, read().duration);
}

TEST(CommentReader, MakesAMomentOfARangeThatRunsBackwards) {
    EXPECT_EQ(0.0, read({{"duration", -2}}).duration);
    EXPECT_EQ(0.0, read({{"end", 3}}).duration);
}

TEST(CommentReader, TakesWholeNumbersAsIdentifiers) {
    EXPECT_EQ("42", readIdentifier(42));
    EXPECT_EQ("42", readIdentifier(42.0));
    EXPECT_EQ("-3", readIdentifier(-3));
    EXPECT_EQ(std::nullopt, readIdentifier(42.5));
    EXPECT_EQ(std::nullopt, readIdentifier(1e300));
    EXPECT_EQ(std::nullopt, readIdentifier(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_EQ(std::nullopt, readIdentifier(""));
    EXPECT_EQ(std::nullopt, readIdentifier(true));
    EXPECT_EQ(std::nullopt, readIdentifier(Json::array({"a"})));
}

TEST(CommentReader, CountsAValueOfAWrongTypeAsAbsent) {
    EXPECT_EQ("fine", read({{"text", 7}, {"body", "fine"}}).text);
    EXPECT_EQ("", read({{"text", Json::array({"a"})}}).text);
    EXPECT_EQ("", read({{"author", 7}}).author);
    EXPECT_EQ(0.0, read({{"duration", "2"}}).duration);
    EXPECT_EQ(std::nullopt, read({{"color", 7}}).colour);
    EXPECT_EQ(std::nullopt, read({{"parentId", nullptr}}).parentId);
    EXPECT_EQ(12.5, readComment({{"id", "a"}, {"time", "2024-01-01"}, {"timestamp", 12.5}})->comment.start);
}

TEST(CommentReader, TakesOnlyRealBooleansForResolved) {
    EXPECT_FALSE(read({{"resolved", 1}}).resolved);
    EXPECT_FALSE(read({{"resolved", "true"}}).resolved);
    EXPECT_TRUE(read({{"resolved", 1}, {"completed", true}}).resolved);
}

TEST(CommentReader, RefusesWhatHasNoIdentifier) {
    EXPECT_FALSE(isComment({{"seconds", 1}}));
    EXPECT_FALSE(isComment({{"id", ""}, {"seconds", 1}}));
    EXPECT_FALSE(isComment({{"id", nullptr}, {"seconds", 1}}));
    EXPECT_FALSE(isComment({{"id", true}, {"seconds", 1}}));
}

TEST(CommentReader, RefusesATimeBeforeTheStart) {
    EXPECT_FALSE(isComment({{"id", "a"}, {"seconds", -0.5}}));
    EXPECT_TRUE(isComment({{"id", "a"}, {"seconds", 0}}));
}

TEST(CommentReader, TakesNoTimeFromWhatIsNotFinite) {
    for (auto const value :
         {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
        EXPECT_FALSE(readComment({{"id", "a"}, {"seconds", value}})->hasStart);
}

TEST(CommentReader, RefusesACommentThatAnswersItself) {
    EXPECT_FALSE(isComment({{"id", "a"}, {"parentId", "a"}, {"seconds", 1}}));
}

TEST(CommentReader, ReadsRepliesOfReplies) {
    auto const deeper = Json{{"id", "r2"}, {"text", "no"}};
    auto const reply = Json{{"id", "r1"}, {"text", "yes"}, {"replies", {deeper}}};
    auto const draft = readComment(comment({{"replies", {reply}}}));
    ASSERT_TRUE(draft);
    ASSERT_TRUE(draft->hasReplies);
    ASSERT_EQ(1U, draft->replies.size());
    EXPECT_EQ("r1", draft->replies[0].comment.id);
    ASSERT_EQ(1U, draft->replies[0].replies.size());
    EXPECT_EQ("no", draft->replies[0].replies[0].comment.text);
}

TEST(CommentReader, TellsAnEmptyListOfRepliesFromNone) {
    EXPECT_TRUE(readComment(comment({{"replies", Json::array()}}))->hasReplies);
    EXPECT_FALSE(readComment(comment())->hasReplies);
    EXPECT_FALSE(readComment(comment({{"replies", 3}}))->hasReplies);
    EXPECT_FALSE(readComment(comment({{"replies", {"r1", "r2"}}}))->hasReplies);
}

TEST(CommentReader, RefusesACommentWithAReplyThatIsNone) {
    EXPECT_FALSE(isComment(comment({{"replies", {{{"text", "no identifier"}}}}})));
}

TEST(CommentReader, KeepsEveryKeyThatCame) {
    auto const value = comment({{"drawing", {{"points", {1, 2, 3}}}}, {"unknown", nullptr}});
    EXPECT_EQ(value, Json::parse(readComment(value)->raw));
}

TEST(CommentReader, KeepsNothingOfThePagesEnvelope) {
    auto const message =
        comment({{"command", "syncComment"}, {"requestId", "req-1-ABCDEF"}, {"resolveId", "7"}});
    EXPECT_EQ(comment(), Json::parse(readCommentMessage(message)->raw));
}

TEST(CommentReader, KeepsInAListWhatIsAnEnvelopeOnlyElsewhere) {
    auto const value = comment({{"command", "dolly in"}});
    EXPECT_EQ(Json::array({value})[0], Json::parse(readComments(Json::array({value}))->at(0).raw));
}

TEST(CommentReader, ReadsAListWholeOrNotAtAll) {
    auto const good = comment();
    EXPECT_EQ(2U, readComments(Json::array({good, good}))->size());
    EXPECT_EQ(0U, readComments(Json::array())->size());
    EXPECT_FALSE(readComments(Json::array({good, {{"seconds", 1}}})));
    EXPECT_FALSE(readComments(Json::array({good, nullptr})));
    EXPECT_FALSE(readComments(Json::array({good, "c2"})));
    EXPECT_FALSE(readComments(good));
    EXPECT_FALSE(readComments("c1"));
    EXPECT_FALSE(readComments(nullptr));
}

TEST(CommentReader, TakesOnlyObjectsForMessages) {
    EXPECT_FALSE(readCommentMessage("c1"));
    EXPECT_FALSE(readCommentMessage(Json::array({comment()})));
    EXPECT_FALSE(readCommentMessage(nullptr));
}

TEST(CommentReader, ReadsTheSequenceThatThePageNames) {
    EXPECT_EQ("s1", readComment(comment({{"sequenceId", "s1"}}))->sequence);
    EXPECT_EQ("7", readComment(comment({{"sequenceId", 7.0}}))->sequence);
    EXPECT_EQ(std::nullopt, readComment(comment({{"sequenceId", ""}}))->sequence);
}

TEST(CommentReader, KeepsDatesAsThePageWritesThem) {
    auto const draft = readComment(comment({{"createdAt", "yesterday"}, {"updatedAt", 7}}));
    EXPECT_EQ("yesterday", draft->createdAt);
    EXPECT_EQ(std::nullopt, draft->updatedAt);
}

} // namespace workbench
