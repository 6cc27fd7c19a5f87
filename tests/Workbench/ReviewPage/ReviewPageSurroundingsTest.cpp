#include "Workbench/ReviewPage/ReviewPageFixture.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

using ReviewPageSurroundingsTest = ReviewPageTest;

TEST_F(ReviewPageSurroundingsTest, CopiesTheEventLog) {
    open();
    page.send("fcp:connected", Json::object());
    ASSERT_TRUE(page.hears("getPlayhead", 2));
    for (int number = 0; number < 100; ++number)
        page.send("fcp:playhead-changed", {{"seconds", number}});
    page.send("fcp:sequence-changed", Sequence);
    page.run("document.getElementById('log-drawer').open = true;");
    ASSERT_TRUE(page.eventually("document.getElementById('log')?.textContent.includes('sequence-changed')"));
    auto const log = page.evaluate("return document.getElementById('log').innerText;").get<std::string>();
    EXPECT_NE(log.find("→ getTimeline {}"), std::string::npos) << log;
    EXPECT_NE(log.find("← getPlayhead 1.5"), std::string::npos) << log;
    EXPECT_NE(log.find("• fcp:connected {}"), std::string::npos) << log;
    EXPECT_NE(log.find("• fcp:playhead-changed ×100 {\"seconds\":99}"), std::string::npos) << log;
    page.click("#copy-log");
    ASSERT_TRUE(becomes("#notice", "The event log is copied."));
    EXPECT_NE(page.clipboard().find("• fcp:playhead-changed ×100 {\"seconds\":99}\n"), std::string::npos);
}

TEST_F(ReviewPageSurroundingsTest, SaysWhenTheBrowserKeepsNothing) {
    page.addScript(
        "Storage.prototype.setItem = () => { throw new DOMException('full', 'QuotaExceededError'); };");
    open();
    page.addComment("only for now", 1);
    EXPECT_TRUE(becomes(State, "Synced"));
    EXPECT_EQ(page.text("#notice"),
              "This browser keeps no comments: a reload loses those that are not synced.");
}

TEST_F(ReviewPageSurroundingsTest, TakesStorageThatHoldsNoListForEmpty) {
    for (auto const* text : {R"({"a":1})", "5", "null", "[", R"("text")"}) {
        auto const set =
            "localStorage.setItem('zelvix.comments:[\"Café 日本 🎬\",29.97]', '" + std::string{text} + "')";
        page.addScript(set.c_str());
        open();
        EXPECT_EQ(commentCount(), 0) << text;
        EXPECT_EQ(page.evaluate("return document.getElementById('no-comments').hidden;"), false) << text;
    }
}

TEST_F(ReviewPageSurroundingsTest, ReadsOnlyCommentsFromTheSharedStorage) {
    page.addScript(R"(localStorage.setItem('zelvix.comments:["Café 日本 🎬",29.97]', JSON.stringify([
        { id: "good", text: "kept", seconds: 1, state: "synced" }, { id: 5, text: "x", seconds: 1, state: "synced" },
        null, "text", { id: "a", text: "x", seconds: "1", state: "synced" },
        { id: "b", text: "x", seconds: 1, state: "elsewhere" }])))");
    open();
    EXPECT_EQ(commentCount(), 1);
    EXPECT_EQ(page.text("#comments [data-part=text]"), "kept");
}

TEST_F(ReviewPageSurroundingsTest, GivesUpRequestsThatNobodyAnswers) {
    // A second passes in ten milliseconds.
    page.addScript("const wait = window.setTimeout; window.asked = [];"
                   "window.setTimeout = (f, ms) => { window.asked.push(ms); return wait(f, ms / 100); };");
    page.neverAnswer("syncComment");
    page.neverAnswer("seekTo");
    open();
    page.addComment("unanswered", 1);
    EXPECT_TRUE(becomes(State, "Not synced"));
    EXPECT_EQ(page.text("#connection"), "Connected");
    page.click("#comments [data-part=seek]");
    EXPECT_TRUE(becomes("#connection", "No answer"));
    EXPECT_EQ(page.evaluate("return [5000, 65000].filter((ms) => !window.asked.includes(ms));"),
              Json::array());
    page.send("fcp:playhead-changed", {{"seconds", 3}});
    EXPECT_TRUE(becomes("#connection", "Connected"));
}

TEST_F(ReviewPageSurroundingsTest, RunsUnderItsOwnPolicy) {
    page.addScript("window.violations = []; document.addEventListener('securitypolicyviolation',"
                   "(event) => window.violations.push(event.violatedDirective + ' ' + event.blockedURI));");
    open();
    page.addComment("styled", 1);
    ASSERT_TRUE(becomes(State, "Synced"));
    EXPECT_EQ(page.evaluate("return window.violations;"), Json::array());
    EXPECT_EQ(
        page.evaluate("return document.querySelectorAll('script:not([src]), style, [onclick]').length;"), 0);
    EXPECT_EQ(page.evaluate("return getComputedStyle(document.body).backgroundColor;"), "rgb(23, 23, 20)");
    page.run(
        "const script = document.createElement('script'); script.textContent = 'window.inlineRan = true';"
        "document.body.append(script);");
    EXPECT_TRUE(page.eventually("window.violations.length === 1"));
    EXPECT_EQ(page.evaluate("return window.inlineRan ?? null;"), nullptr);
}

TEST_F(ReviewPageSurroundingsTest, GivesEveryControlANameAndAPlaceInTheKeyboardsOrder) {
    page.answer("syncComment", false);
    open();
    page.addComment("named", 1);
    ASSERT_TRUE(becomes(State, "Not synced"));
    EXPECT_EQ(page.evaluate(R"(
        const controls = [...document.querySelectorAll("button, input, select, textarea, a, summary")];
        const name = (control) => control.getAttribute("aria-label") ?? control.labels?.[0]?.textContent ?? control.textContent;
        return controls.filter((control) => name(control).trim() === "" || control.tabIndex < 0).map((c) => c.outerHTML);
    )"),
              Json::array());
    EXPECT_EQ(
        page.evaluate("return document.querySelector('[data-part=remove]').getAttribute('aria-label');"),
        "Delete: named");
}

TEST(ReviewPage, WorksOnASampleOutsideThePanelAndSaysSo) {
    PageUnderTest page{PageUnderTest::Surroundings::Browser};
    page.load();
    auto const shows = [&page](char const* selector, char const* text) {
        return page.eventually("document.querySelector('" + std::string{selector} +
                               "')?.textContent === " + Json(text).dump());
    };
    EXPECT_TRUE(shows("#connection", "No editor"));
    EXPECT_TRUE(shows("#banner p", "No editor is attached. Comments are kept in this browser and reach no "
                                   "container application."));
    EXPECT_TRUE(shows("#sequence-name", "Sample sequence"));
    page.run("const slider = document.getElementById('sample-playhead'); slider.value = 60.5;"
             "slider.dispatchEvent(new Event('input', { bubbles: true }));");
    EXPECT_TRUE(shows("#timecode", "00:01:00;15"));
    page.run(typed("#new-comment", "kept here") + "document.getElementById('add').requestSubmit();");
    EXPECT_TRUE(shows("#comments [data-part=state]", "Not synced"));
    page.click("#folder");
    EXPECT_TRUE(shows("#notice", "No folder was chosen."));
}

// Its task is meant for the page in the panel: another one would take the recording away and report on
// itself.
TEST_F(ReviewPageSurroundingsTest, PlaysNothingBackInABrowser) {
    constexpr auto task = "const find = document.getElementById.bind(document);"
                          "document.getElementById = (id) =>"
                          "    id === 'session' ? { textContent: '{\"mode\":\"replay\"}' } : find(id);";
    PageUnderTest browser{PageUnderTest::Surroundings::Browser};
    browser.addScript(task);
    browser.load();
    EXPECT_TRUE(browser.eventually("document.querySelector('#connection')?.textContent === 'No editor'"));
    page.addScript(task);
    page.load();
    EXPECT_TRUE(becomes("#page", "Playing a recording back …"));
}

} // namespace
} // namespace workbench
