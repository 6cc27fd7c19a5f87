#include "Workbench/ReviewPage/ReviewPageFixture.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

TEST_F(ReviewPageTest, ShowsNameDurationRateAndPlayheadOfTheSequence) {
    open();
    EXPECT_EQ(page.text("#duration"), "00:02:00;04");
    EXPECT_EQ(page.text("#rate"), "29.97 fps");
    EXPECT_TRUE(becomes("#timecode", "00:00:01;14"));
    EXPECT_EQ(page.text("#frame"), "44");
    EXPECT_EQ(page.text("#connection"), "Connected");
    EXPECT_EQ(page.evaluate("return document.getElementById('banner').hidden;"), true);
}

TEST_F(ReviewPageTest, FollowsTheEventsOfThePanel) {
    page.answer("getTimeline", nullptr);
    page.answer("getPlayhead", 0);
    page.load();
    EXPECT_TRUE(page.hears("getTimeline", 1));
    EXPECT_EQ(page.text("#sequence-name"), "No sequence");
    page.send("fcp:connected", Json::object());
    page.send("fcp:sequence-changed", Sequence);
    page.send("fcp:playhead-changed", {{"seconds", 61.0}});
    EXPECT_TRUE(becomes("#timecode", "00:01:01;00"));
    EXPECT_EQ(page.text("#sequence-name"), "Café 日本 🎬");
}

TEST_F(ReviewPageTest, TakesASecondConnectedForTheFirst) {
    open();
    page.addComment("once", 1);
    ASSERT_TRUE(becomes(State, "Synced"));
    for (int round = 0; round < 2; ++round) {
        page.send("fcp:connected", Json::object());
        page.send("fcp:sequence-changed", Sequence);
    }
    EXPECT_TRUE(page.hears("getPlayhead", 3));
    EXPECT_EQ(commentCount(), 1);
    EXPECT_EQ(page.messages("syncComment").size(), 1U);
    EXPECT_EQ(page.text("#timecode"), "00:00:00;29");
}

TEST_F(ReviewPageTest, RepairsTextOfEventsExactlyOnce) {
    open();
    auto changed = Sequence;
    // Looks like damaged text, but is what the user called the sequence.
    for (auto const* name : {"CafÃ©", "Ünï", "日本", "🎬", "naïve café", "plain"}) {
        changed["name"] = name;
        page.send("fcp:sequence-changed", changed);
        EXPECT_TRUE(becomes("#sequence-name", name)) << name;
    }
}

TEST_F(ReviewPageTest, RepairsTextOfAnswersExactlyOnce) {
    auto named = Sequence;
    named["name"] = "CafÃ©";
    page.answer("getTimeline", named);
    page.load();
    EXPECT_TRUE(becomes("#sequence-name", "CafÃ©"));
}

TEST_F(ReviewPageTest, MovesNothingWhileTheTimecodeRuns) {
    open();
    page.addComment("stays where it is", 1);
    auto const layout = R"(
        const digits = document.createRange();
        digits.selectNodeContents(document.getElementById("timecode"));
        const parts = [...document.querySelectorAll("#page > :not(footer), main *, footer > *")];
        return [digits, ...parts].map((part) => {
            const box = part.getBoundingClientRect();
            return [part.id, box.x, box.y, box.width, box.height].join(" ");
        }).join("\n");
    )";
    ASSERT_TRUE(becomes(State, "Synced"));
    auto const before = page.evaluate(layout);
    for (auto const& [seconds, shown] : {std::pair{11.111, "00:00:11;02"}, std::pair{83.3, "00:01:23;08"}}) {
        page.send("fcp:playhead-changed", {{"seconds", seconds}});
        ASSERT_TRUE(becomes("#timecode", shown));
        EXPECT_EQ(page.evaluate(layout), before);
    }
}

TEST_F(ReviewPageTest, AddsACommentAtThePlayhead) {
    open();
    page.neverAnswer("syncComment");
    page.addComment("  Größer 🎬  ", 12.5);
    ASSERT_TRUE(page.hears("syncComment", 1));
    auto const message = page.messages("syncComment").front();
    EXPECT_EQ(message.at("text"), "Größer 🎬");
    EXPECT_EQ(message.at("seconds"), 12.5);
    EXPECT_FALSE(message.at("id").get<std::string>().empty());
    EXPECT_EQ(page.text("#comments [data-part=timecode]"), "00:00:12;14");
    EXPECT_EQ(page.text("#comments [data-part=text]"), "Größer 🎬");
    EXPECT_EQ(page.text(State), "Syncing");
    page.resolve(message, true);
    EXPECT_TRUE(becomes(State, "Synced"));
    EXPECT_EQ(page.evaluate("return document.getElementById('new-comment').value;"), "");
}

TEST_F(ReviewPageTest, AddsNothingForBlankText) {
    open();
    page.addComment("   ", 1);
    page.addComment("something", 1);
    EXPECT_TRUE(page.hears("syncComment", 1));
    EXPECT_EQ(commentCount(), 1);
}

TEST_F(ReviewPageTest, OffersARetryWhenTheContainerRefused) {
    page.answer("syncComment", false);
    open();
    page.addComment("again", 1);
    ASSERT_TRUE(becomes(State, "Not synced"));
    page.answer("syncComment", true);
    page.click("#comments [data-part=retry]");
    EXPECT_TRUE(becomes(State, "Synced"));
    auto const sent = page.messages("syncComment");
    ASSERT_EQ(sent.size(), 2U);
    EXPECT_EQ(sent[0].at("id"), sent[1].at("id"));
    EXPECT_EQ(page.evaluate("return document.querySelector('[data-part=retry]').hidden;"), true);
}

TEST_F(ReviewPageTest, TakesOnlyTheBooleanTrueForSuccess) {
    open();
    for (auto const& answer : {Json("true"), Json(1), Json(nullptr), Json::object()}) {
        page.answer("syncComment", answer);
        page.addComment("refused with " + answer.dump(), 1);
    }
    EXPECT_TRUE(page.eventually(R"([...document.querySelectorAll("[data-part=state]")].filter(
        (state) => state.textContent === "Not synced").length === 4)"));
}

TEST_F(ReviewPageTest, DeletesACommentOnceTheContainerHasAgreed) {
    open();
    page.addComment("to go", 1);
    ASSERT_TRUE(becomes(State, "Synced"));
    page.answer("deleteComment", false);
    page.click("#comments [data-part=remove]");
    ASSERT_TRUE(becomes(State, "Not deleted"));
    page.answer("deleteComment", true);
    page.click("#comments [data-part=retry]");
    EXPECT_TRUE(page.eventually("document.querySelectorAll('#comments > li').length === 0"));
    EXPECT_EQ(page.messages("deleteComment").back().at("commentId"),
              page.messages("syncComment").front().at("id"));
    EXPECT_EQ(page.evaluate("return document.getElementById('no-comments').hidden;"), false);
}

TEST_F(ReviewPageTest, DeletesACommentThatIsStillOnItsWay) {
    page.neverAnswer("syncComment");
    open();
    page.addComment("short life", 1);
    ASSERT_TRUE(page.hears("syncComment", 1));
    page.neverAnswer("deleteComment");
    page.click("#comments [data-part=remove]");
    ASSERT_TRUE(page.hears("deleteComment", 1));
    page.resolve(page.messages("syncComment").front(), true);
    EXPECT_EQ(page.text(State), "Deleting");
    page.resolve(page.messages("deleteComment").front(), true);
    EXPECT_TRUE(page.eventually("document.querySelectorAll('#comments > li').length === 0"));
}

TEST_F(ReviewPageTest, KeepsTheKeyboardInTheListWhenACommentGoes) {
    open();
    for (int second = 1; second <= 3; ++second)
        page.addComment("comment " + std::to_string(second), second);
    ASSERT_TRUE(page.hears("syncComment", 3));
    page.run("document.querySelectorAll('[data-part=remove]')[1].focus();");
    page.click("#comments > li:nth-child(2) [data-part=remove]");
    ASSERT_TRUE(page.eventually("document.querySelectorAll('#comments > li').length === 2"));
    EXPECT_EQ(page.evaluate("return document.activeElement.textContent;"), "00:00:02;29comment 3");
}

TEST_F(ReviewPageTest, SeeksToAComment) {
    open();
    page.addComment("here", 12.345);
    page.send("fcp:playhead-changed", {{"seconds", 99.0}});
    page.click("#comments [data-part=seek]");
    ASSERT_TRUE(page.hears("seekTo", 1));
    EXPECT_EQ(page.messages("seekTo").front().at("seconds"), 12.345);
}

TEST_F(ReviewPageTest, HighlightsTheClickedMarkersCommentAndScrollsToIt) {
    open();
    for (int number = 0; number < 40; ++number)
        page.addComment("comment " + std::to_string(number), number);
    ASSERT_TRUE(page.hears("syncComment", 40));
    auto const id = page.messages("syncComment").at(35).at("id");
    page.run("document.querySelector('.scroll').scrollTop = 0;");
    page.send("fcp:marker-clicked", {{"id", id}, {"text", "comment 35"}, {"seconds", 35.2}});
    EXPECT_TRUE(becomes("#comments > li[aria-current] [data-part=text]", "comment 35"));
    EXPECT_TRUE(isInView("#comments > li[aria-current]"));
    EXPECT_EQ(page.evaluate("return document.querySelectorAll('li[aria-current]').length;"), 1);
    EXPECT_EQ(page.text("#notice"), "Marker: comment 35");
}

TEST_F(ReviewPageTest, AdoptsAMarkerThatItDoesNotKnow) {
    open();
    page.send("fcp:marker-clicked",
              {{"id", "other"}, {"text", "from elsewhere"}, {"start", 7.0}, {"seconds", 7.3}});
    EXPECT_TRUE(becomes("#comments > li[aria-current] [data-part=text]", "from elsewhere"));
    EXPECT_EQ(page.text("#comments [data-part=timecode]"), "00:00:06;29");
    EXPECT_EQ(page.text(State), "Synced");
    page.send("fcp:marker-clicked", {{"note", "no identifier, no text"}, {"seconds", 1.0}});
    EXPECT_TRUE(page.eventually("document.querySelector('li[aria-current]') === null"));
    EXPECT_EQ(commentCount(), 1);
}

TEST_F(ReviewPageTest, KeepsCommentsOverAReload) {
    open();
    page.addComment("first", 2);
    page.addComment("second", 1);
    ASSERT_TRUE(page.hears("syncComment", 2));
    ASSERT_TRUE(page.eventually("document.querySelectorAll('[data-state=synced]').length === 2"));
    open();
    EXPECT_EQ(
        page.evaluate(
            "return [...document.querySelectorAll('#comments [data-part=text]')].map(p => p.textContent);"),
        Json::parse(R"(["second", "first"])"));
    EXPECT_EQ(page.messages("syncComment").size(), 2U);
}

TEST_F(ReviewPageTest, SendsAgainWhatWasOnItsWayWhenThePageWasLoadedAgain) {
    page.neverAnswer("syncComment");
    open();
    page.addComment("lost on the way", 2);
    ASSERT_TRUE(page.hears("syncComment", 1));
    page.answer("syncComment", true);
    open();
    EXPECT_TRUE(becomes(State, "Synced"));
    auto const sent = page.messages("syncComment");
    ASSERT_EQ(sent.size(), 2U);
    EXPECT_EQ(sent[0].at("id"), sent[1].at("id"));
    EXPECT_EQ(sent[0].at("seconds"), sent[1].at("seconds"));
    EXPECT_NE(sent[0].at("resolveId"), sent[1].at("resolveId"));
}

TEST_F(ReviewPageTest, IgnoresAnAnswerToARequestOfAnEarlierLoad) {
    page.neverAnswer("syncComment");
    open();
    page.addComment("waiting", 2);
    ASSERT_TRUE(page.hears("syncComment", 1));
    open();
    ASSERT_TRUE(page.hears("syncComment", 2));
    page.resolve(page.messages("syncComment").front(), true);
    EXPECT_EQ(page.text(State), "Syncing");
    page.resolve(page.messages("syncComment").back(), true);
    EXPECT_TRUE(becomes(State, "Synced"));
}

TEST_F(ReviewPageTest, KeepsTheCommentsOfEachSequenceApart) {
    open();
    page.addComment("of the first", 2);
    auto other = Sequence;
    other["name"] = "Other";
    page.send("fcp:sequence-changed", other);
    EXPECT_TRUE(page.eventually("document.querySelectorAll('#comments > li').length === 0"));
    page.addComment("of the second", 3);
    EXPECT_TRUE(becomes("#comments [data-part=text]", "of the second"));
    auto longer = Sequence;
    longer["duration"] = 240.24;
    page.send("fcp:sequence-changed", longer);
    EXPECT_TRUE(becomes("#comments [data-part=text]", "of the first"))
        << "a change of length is no other sequence";
    EXPECT_EQ(commentCount(), 1);
}

TEST_F(ReviewPageTest, SettlesACommentOfASequenceThatIsNotShown) {
    page.neverAnswer("syncComment");
    open();
    page.addComment("of the first", 2);
    ASSERT_TRUE(page.hears("syncComment", 1));
    auto other = Sequence;
    other["name"] = "Other";
    page.send("fcp:sequence-changed", other);
    ASSERT_TRUE(becomes("#sequence-name", "Other"));
    page.resolve(page.messages("syncComment").front(), true);
    page.send("fcp:sequence-changed", Sequence);
    EXPECT_TRUE(becomes(State, "Synced"));
}

TEST_F(ReviewPageTest, SendsNothingTwiceWhenASequenceComesBack) {
    page.neverAnswer("syncComment");
    open();
    page.addComment("of the first", 2);
    ASSERT_TRUE(page.hears("syncComment", 1));
    auto other = Sequence;
    other["name"] = "Other";
    page.send("fcp:sequence-changed", other);
    page.send("fcp:sequence-changed", Sequence);
    page.addComment("a later one", 3);
    EXPECT_TRUE(page.hears("syncComment", 2));
    EXPECT_EQ(page.messages("syncComment").back().at("text"), "a later one");
}

TEST_F(ReviewPageTest, SyncsTheWholeListAtOnce) {
    page.answer("syncComment", false);
    open();
    page.addComment("b", 2);
    page.addComment("a", 1);
    ASSERT_TRUE(page.eventually("document.querySelectorAll('.state[data-state=failed]').length === 2"));
    page.click("#sync-all");
    EXPECT_TRUE(page.eventually("document.querySelectorAll('.state[data-state=synced]').length === 2"));
    auto const comments = page.messages("syncAllComments").front().at("comments");
    ASSERT_EQ(comments.size(), 2U);
    for (auto const& comment : comments)
        EXPECT_TRUE(comment.contains("id") && comment.contains("text") && comment.contains("seconds"))
            << comment;
    page.answer("syncAllComments", false);
    page.click("#sync-all");
    EXPECT_TRUE(page.eventually("document.querySelectorAll('.state[data-state=failed]').length === 2"));
    EXPECT_EQ(page.text("#notice"), "The comments could not be synced.");
}

TEST_F(ReviewPageTest, LeavesACommentOutOfTheListThatIsBeingDeleted) {
    page.answer("deleteComment", false);
    open();
    page.addComment("stays", 1);
    page.addComment("goes", 2);
    ASSERT_TRUE(page.eventually("document.querySelectorAll('.state[data-state=synced]').length === 2"));
    page.click("#comments > li:nth-child(2) [data-part=remove]");
    ASSERT_TRUE(becomes("#comments > li:nth-child(2) [data-part=state]", "Not deleted"));
    page.click("#sync-all");
    ASSERT_TRUE(page.eventually(
        "/^1 comment synced in [0-9.]+ s\\.$/.test(document.getElementById('notice').textContent)"));
    auto const comments = page.messages("syncAllComments").front().at("comments");
    ASSERT_EQ(comments.size(), 1U);
    EXPECT_EQ(comments[0].at("text"), "stays");
    EXPECT_TRUE(becomes("#comments > li:nth-child(2) [data-part=state]", "Not deleted"));
}

TEST_F(ReviewPageTest, AsksForACsvExportAndSaysWhatBecameOfIt) {
    open();
    page.click("#export");
    EXPECT_TRUE(becomes("#notice", "Export started."));
    EXPECT_EQ(page.messages("startExport").front().at("config"),
              Json::parse(R"({"format": "csv", "include": "all", "replies": true, "onExists": "rename",
                                "frameRate": 29.97})"));
    page.answer("startExport", false);
    page.click("#export");
    EXPECT_TRUE(becomes("#notice", "The export was refused."));
}

TEST_F(ReviewPageTest, AsksForAFolder) {
    page.answer("selectOutputFolder", "/home/me/Größe");
    open();
    page.click("#folder");
    EXPECT_TRUE(becomes("#notice", "Exports go to /home/me/Größe"));
    page.answer("selectOutputFolder", nullptr);
    page.click("#folder");
    EXPECT_TRUE(becomes("#notice", "No folder was chosen."));
}

TEST_F(ReviewPageTest, FindsTheCommentAtThePlayhead) {
    open();
    page.send("fcp:playhead-changed", {{"seconds", 7.25}});
    page.answer("getMarkerAtTime", nullptr);
    page.click("#find");
    EXPECT_TRUE(becomes("#notice", "No comment at the playhead."));
    EXPECT_EQ(page.messages("getMarkerAtTime").front().at("seconds"), 7.25);
    page.answer("getMarkerAtTime", false);
    page.click("#find");
    EXPECT_TRUE(becomes("#notice", "The container application is not connected."));
    page.answer("getMarkerAtTime", {{"id", "x"}, {"text", "found"}, {"start", 7.0}});
    page.click("#find");
    EXPECT_TRUE(becomes("#comments > li[aria-current] [data-part=text]", "found"));
}

} // namespace
} // namespace workbench
