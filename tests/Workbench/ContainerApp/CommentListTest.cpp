#include "Workbench/ContainerApp/CommentList.h"

#include <gtest/gtest.h>

namespace workbench {

namespace {

CommentDraft draft(std::string const& id, std::optional<double> start,
                   std::optional<std::string> parent = {}) {
    auto made = CommentDraft{};
    made.comment.id = id;
    made.comment.parentId = std::move(parent);
    made.comment.start = start.value_or(0);
    made.hasStart = start.has_value();
    return made;
}

CommentDraft withReplies(CommentDraft parent, std::vector<CommentDraft> replies) {
    parent.replies = std::move(replies);
    parent.hasReplies = true;
    return parent;
}

std::optional<double> nothingKnown(std::string const&) {
    return {};
}

Comment comment(std::string const& id, std::optional<std::string> parent = {}) {
    auto made = Comment{};
    made.id = id;
    made.parentId = std::move(parent);
    return made;
}

std::string order(std::vector<Comment> comments) {
    auto text = std::string{};
    for (auto const& each : threaded(std::move(comments)))
        text += each.id;
    return text;
}

} // namespace

TEST(CommentList, PutsRepliesBehindTheirParent) {
    auto const list =
        flatten({withReplies(draft("a", 1), {withReplies(draft("b", 2), {draft("c", 3)})}), draft("d", 4)},
                nothingKnown);
    ASSERT_TRUE(list);
    ASSERT_EQ(4U, list->size());
    EXPECT_EQ("a", list->at(0).comment.id);
    EXPECT_EQ("a", list->at(1).comment.parentId);
    EXPECT_EQ("b", list->at(2).comment.parentId);
    EXPECT_EQ(std::nullopt, list->at(3).comment.parentId);
}

TEST(CommentList, GivesAReplyTheTimeOfItsParent) {
    auto const list = flatten({withReplies(draft("a", 1.5), {withReplies(draft("b", {}), {draft("c", {})})})},
                              nothingKnown);
    ASSERT_TRUE(list);
    EXPECT_EQ(1.5, list->at(1).comment.start);
    EXPECT_EQ(1.5, list->at(2).comment.start);
}

TEST(CommentList, FindsTheTimeOfAParentThatComesLater) {
    auto const list = flatten({draft("c", {}, "b"), draft("b", {}, "a"), draft("a", 1.5)}, nothingKnown);
    ASSERT_TRUE(list);
    EXPECT_EQ(1.5, list->at(0).comment.start);
    EXPECT_EQ(1.5, list->at(1).comment.start);
}

TEST(CommentList, FindsTheTimeOfAParentThatIsKnownAlready) {
    auto const known = [](std::string const& id) { return id == "a" ? std::optional{7.0} : std::nullopt; };
    EXPECT_EQ(7.0, flatten({draft("b", {}, "a")}, known)->at(0).comment.start);
    EXPECT_FALSE(flatten({draft("b", {}, "z")}, known));
}

TEST(CommentList, RefusesACommentWithoutATime) {
    EXPECT_FALSE(flatten({draft("a", {})}, nothingKnown));
    EXPECT_FALSE(flatten({draft("a", 1), draft("b", {})}, nothingKnown));
}

TEST(CommentList, RefusesRepliesWithoutATimeThatRunInACircle) {
    EXPECT_FALSE(flatten({draft("a", {}, "b"), draft("b", {}, "a")}, nothingKnown));
    EXPECT_TRUE(flatten({draft("a", 1, "b"), draft("b", {}, "a")}, nothingKnown));
}

TEST(CommentList, RefusesAnIdentifierThatStandsTwice) {
    EXPECT_FALSE(flatten({draft("a", 1), draft("a", 1)}, nothingKnown));
    EXPECT_FALSE(flatten({withReplies(draft("a", 1), {draft("a", 1)})}, nothingKnown));
    EXPECT_FALSE(flatten({withReplies(draft("a", 1), {draft("b", 1)}), draft("b", 1)}, nothingKnown));
}

TEST(CommentList, SettlesALongChainOfRepliesInOneGo) {
    constexpr auto count = 200'000;
    auto drafts = std::vector<CommentDraft>{draft("0", 2.5)};
    for (auto number = 1; number < count; ++number)
        drafts.push_back(draft(std::to_string(number), {}, std::to_string(number - 1)));
    std::ranges::reverse(drafts);
    auto const list = flatten(std::move(drafts), nothingKnown);
    ASSERT_TRUE(list);
    EXPECT_EQ(2.5, list->front().comment.start);
}

TEST(CommentList, ShowsEachReplyBehindItsParent) {
    EXPECT_EQ("acbd", order({comment("a"), comment("b"), comment("c", "a"), comment("d", "b")}));
    EXPECT_EQ("abcd", order({comment("a"), comment("d", "c"), comment("b", "a"), comment("c", "b")}));
}

TEST(CommentList, ShowsWhatHangsFromNoCommentAtItsOwnPlace) {
    EXPECT_EQ("abc", order({comment("a"), comment("b", "gone"), comment("c")}));
}

TEST(CommentList, LosesNothingThatRunsInACircle) {
    EXPECT_EQ("cab", order({comment("a", "b"), comment("b", "a"), comment("c")}));
}

TEST(CommentList, ThreadsALongChainOfReplies) {
    constexpr auto count = 200'000;
    auto comments = std::vector<Comment>{comment("0")};
    for (auto number = 1; number < count; ++number)
        comments.push_back(comment(std::to_string(number), std::to_string(number - 1)));
    EXPECT_EQ(std::to_string(count - 1), threaded(std::move(comments)).back().id);
}

} // namespace workbench
