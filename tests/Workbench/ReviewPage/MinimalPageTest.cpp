#include "Workbench/ReviewPage/PageUnderTest.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

Json const Sequence = {
    {"name", "Café 日本 🎬"},        {"duration", 120.12}, {"frameRate", 29.97}, {"width", 0}, {"height", 0},
    {"startTimecode", "00:00:00:00"}};

bool becomes(PageUnderTest& page, std::string const& selector, std::string const& text) {
    return page.eventually("document.querySelector(" + Json(selector).dump() +
                           ")?.textContent === " + Json(text).dump());
}

// One page for all of it: the engine takes a while to start.
TEST(MinimalPage, FollowsTheEditorAndHandsCommentsToTheContainer) {
    PageUnderTest page;
    page.addScript("window.violations = []; document.addEventListener('securitypolicyviolation',"
                   "(event) => window.violations.push(event.violatedDirective));");
    page.answer("getTimeline", Sequence);
    page.answer("getPlayhead", 61.0);
    page.answer("seekTo", true);
    page.answer("syncComment", false);
    page.load();
    EXPECT_TRUE(becomes(page, "#sequence-name", "Café 日本 🎬"));
    EXPECT_TRUE(becomes(page, "#timecode", "00:01:00:28"));
    EXPECT_TRUE(becomes(page, "#connection", "Connected"));

    auto renamed = Sequence;
    renamed["name"] = "CafÃ©"; // looks damaged, and is meant so
    page.send("fcp:sequence-changed", renamed);
    EXPECT_TRUE(becomes(page, "#sequence-name", "CafÃ©"));

    page.addComment("  Größer 🎬  ", 12.5);
    EXPECT_TRUE(becomes(page, "#comments .state", "Not synced"));
    page.answer("syncComment", true);
    page.click("#comments .retry");
    EXPECT_TRUE(becomes(page, "#comments .state", "Synced"));
    auto const sent = page.messages("syncComment");
    ASSERT_EQ(sent.size(), 2U);
    EXPECT_EQ(sent[0].at("id"), sent[1].at("id"));
    EXPECT_EQ(sent[1].at("text"), "Größer 🎬");
    EXPECT_EQ(sent[1].at("seconds"), 12.5);

    page.send("fcp:playhead-changed", {{"seconds", 99.0}});
    page.click("#comments .seek");
    ASSERT_TRUE(page.hears("seekTo", 1));
    EXPECT_EQ(page.messages("seekTo").front().at("seconds"), 12.5);
    EXPECT_EQ(page.evaluate("return window.violations;"), Json::array());
}

TEST(MinimalPage, SaysWhenThereIsNoPanel) {
    PageUnderTest page{PageUnderTest::Surroundings::Browser};
    page.load();
    EXPECT_TRUE(becomes(page, "#connection", "Outside the panel"));
}

} // namespace
} // namespace workbench
