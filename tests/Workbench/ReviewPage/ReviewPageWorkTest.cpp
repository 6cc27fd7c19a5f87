#include "Workbench/ReviewPage/ReviewPageFixture.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

class ReviewPageWorkTest : public ReviewPageTest {
protected:
    // Five thousand comments, a second apart, as an earlier load has left them.
    void openThousands() {
        page.addScript(R"(localStorage.setItem('zelvix.comments:["Café 日本 🎬",29.97]', JSON.stringify(
            Array.from({ length: 5000 }, (_, number) => ({ id: `c${number}`, seconds: number, state: "synced",
                text: "word ".repeat(1 + number * 7 % 40) + number })))))");
        open();
        ASSERT_TRUE(becomes("#count", "5,000"));
    }

    void type(std::string const& selector, std::string const& text) {
        ASSERT_TRUE(page.eventually("document.querySelector('" + selector + "')"));
        page.run(typed(selector, text));
    }

    void press(std::string const& key) {
        page.run("document.activeElement.dispatchEvent(new KeyboardEvent('keydown', { key: '" + key +
                 "', bubbles: true, cancelable: true }));");
    }

    [[nodiscard]] bool hasKeyboard(int position) {
        return page.eventually("document.activeElement.closest('li')?.getAttribute('aria-posinset') === '" +
                               std::to_string(position) + "'");
    }
};

TEST_F(ReviewPageWorkTest, KeepsWhatIsBeingTypedOverAReload) {
    open();
    page.addComment("there", 1);
    ASSERT_TRUE(becomes(State, "Synced"));
    page.send("fcp:playhead-changed", {{"seconds", 5.0}});
    type("#new-comment", "half a comm");
    page.click("[data-part=edit]");
    type("[data-part=editor] textarea", "half an ed");
    page.click("[data-part=reply]");
    type("[data-part=new-reply] textarea", "half a rep");
    open();
    page.send("fcp:playhead-changed", {{"seconds", 50.0}});
    EXPECT_TRUE(
        page.eventually("document.querySelector('[data-part=new-reply] textarea')?.value === 'half a rep'"));
    EXPECT_TRUE(
        page.eventually("document.querySelector('[data-part=editor] textarea')?.value === 'half an ed'"));
    page.run("document.getElementById('add').requestSubmit();");
    ASSERT_TRUE(page.hears("syncComment", 2));
    EXPECT_EQ(page.messages("syncComment").back().at("text"), "half a comm");
    EXPECT_EQ(page.messages("syncComment").back().at("seconds"), 5.0);
}

TEST_F(ReviewPageWorkTest, ChangesRepliesToAndResolvesAComment) {
    open();
    type("#author", "Zoë");
    page.addComment("rough", 1);
    page.click("[data-part=edit]");
    type("[data-part=editor] textarea", "smooth");
    page.send("fcp:playhead-changed", {{"seconds", 3.5}});
    page.click("[data-part=editor] [data-part=out]");
    page.click("[data-part=save]");
    ASSERT_TRUE(becomes("#comments [data-part=text]", "smooth"));
    EXPECT_TRUE(becomes("#comments [data-part=end]", "– 00:00:03;14"));
    page.click("[data-part=reply]");
    type("[data-part=new-reply] textarea", "agreed");
    page.run("document.querySelector('[data-part=new-reply] textarea').focus();");
    press("Enter");
    ASSERT_TRUE(becomes("[data-part=reply-text]", "agreed"));
    page.click("[data-part=resolve]");
    ASSERT_TRUE(page.hears("syncComment", 4));
    auto const sent = page.messages("syncComment").back();
    EXPECT_EQ(sent.at("text"), "smooth");
    EXPECT_EQ(sent.at("duration"), 2.5);
    EXPECT_EQ(sent.at("author"), "Zoë");
    EXPECT_EQ(sent.at("resolved"), true);
    EXPECT_EQ(sent.at("replies").at(0).at("text"), "agreed");
    EXPECT_TRUE(becomes("#comments [data-part=resolved]", "Resolved"));
}

TEST_F(ReviewPageWorkTest, MakesRoomForWhatIsTypedInARow) {
    open();
    page.addComment("first", 1);
    page.addComment("second", 2);
    ASSERT_TRUE(page.eventually("document.querySelectorAll('#comments > li').length === 2"));
    page.click("[data-part=reply]");
    auto const standsBelow = [this] {
        return page.eventually(
            "(() => { const [first, second] = [...document.querySelectorAll('#comments > li')]"
            ".map((row) => row.getBoundingClientRect()); return Math.abs(first.bottom - second.top) < 1; "
            "})()");
    };
    ASSERT_TRUE(page.eventually("document.querySelector('[data-part=new-reply] textarea')"));
    EXPECT_TRUE(standsBelow());
    type("[data-part=new-reply] textarea", "a\nb\nc\nd");
    ASSERT_TRUE(
        page.eventually("document.querySelector('[data-part=new-reply] textarea').clientHeight > 70"));
    EXPECT_TRUE(standsBelow());
}

TEST_F(ReviewPageWorkTest, ChangesOneTextForEachPaintedFrame) {
    open();
    ASSERT_TRUE(becomes("#timecode", "00:00:01;14"));
    auto const changes = page.evaluate(R"(
        const node = document.getElementById("timecode").firstChild;
        const changes = [];
        const watch = new MutationObserver((records) => changes.push(...records));
        watch.observe(document.getElementById("page"), { childList: true, characterData: true, subtree: true });
        for (let number = 0; number < 100; number += 1)
            window.dispatchEvent(new CustomEvent("fcp:playhead-changed", { detail: { seconds: 5 + number / 60 } }));
        await new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)));
        return [changes.map(({ type, target }) => type + " " + target.parentElement.id).sort(),
                document.getElementById("timecode").firstChild === node, node.data];
    )");
    EXPECT_EQ(changes,
              Json::parse(R"([["characterData frame", "characterData timecode"], true, "00:00:06;19"])"));
}

TEST_F(ReviewPageWorkTest, MakesOnlyTheRowsOnTheScreenOfThousands) {
    openThousands();
    EXPECT_LT(page.evaluate("return document.querySelectorAll('#comments > li').length;"), 60);
    EXPECT_EQ(page.evaluate("const row = document.querySelector('#comments > li');"
                            "return [row.getAttribute('aria-setsize'), row.getAttribute('aria-posinset')];"),
              Json::parse(R"(["5000", "1"])"));
    page.send("fcp:marker-clicked", {{"id", "c4321"}, {"text", "far below"}, {"seconds", 4321.0}});
    ASSERT_TRUE(
        page.eventually("document.querySelector('#comments > li[aria-current]')?.dataset.id === 'c4321'"));
    EXPECT_TRUE(isInView("#comments > li[aria-current]"));
    EXPECT_EQ(page.evaluate(R"(
        const boxes = [...document.querySelectorAll("#comments > li")].map((row) => row.getBoundingClientRect());
        return boxes.slice(1).filter((box, index) => Math.abs(box.top - boxes[index].bottom) > 1).length;
    )"),
              0)
        << "rows overlap, or leave gaps";
}

TEST_F(ReviewPageWorkTest, LeadsTheKeyboardThroughThousands) {
    openThousands();
    EXPECT_EQ(page.evaluate("return [...document.querySelectorAll('#comments button')]"
                            ".filter((button) => button.tabIndex === 0 && !button.hidden).length;"),
              5)
        << "the list is one stop on the keyboard's way, with the tools of one comment";
    page.run("document.querySelector('#comments .seek').focus();");
    EXPECT_TRUE(hasKeyboard(1));
    press("ArrowDown");
    EXPECT_TRUE(hasKeyboard(2));
    press("End");
    EXPECT_TRUE(hasKeyboard(5000));
    EXPECT_TRUE(isInView("#comments > li:focus-within"));
    press("ArrowUp");
    EXPECT_TRUE(hasKeyboard(4999));
    page.run("document.querySelector('.scroll').scrollTop = 0;");
    EXPECT_TRUE(
        page.eventually("document.querySelector('#comments > li').getAttribute('aria-posinset') === '1'"));
    EXPECT_TRUE(hasKeyboard(4999)) << "scrolling takes the keyboard away from its row";
    press("Home");
    EXPECT_TRUE(hasKeyboard(1));
}

TEST_F(ReviewPageWorkTest, StandsStillWhereRowsAboveTurnOutHigher) {
    openThousands();
    page.run("document.querySelector('.scroll').scrollTop = 100000;");
    ASSERT_TRUE(
        page.eventually("document.querySelector('#comments > li').getAttribute('aria-posinset') > 100"));
    auto const jumps = page.evaluate(R"(
        const scroller = document.querySelector(".scroll");
        const nextFrame = () => new Promise(requestAnimationFrame);
        let worst = 0;
        for (let step = 0; step < 20; step += 1) {
            const top = scroller.getBoundingClientRect().top;
            const row = [...document.querySelectorAll("#comments > li")].find((one) => one.getBoundingClientRect().top > top);
            const before = row.getBoundingClientRect().top;
            scroller.scrollTop -= 60;
            await nextFrame();
            await nextFrame();
            worst = Math.max(worst, Math.abs(row.getBoundingClientRect().top - before - 60));
        }
        return worst;
    )");
    EXPECT_LE(jumps, 1);
}

TEST_F(ReviewPageWorkTest, ShowsWhatIsAskedFor) {
    open();
    page.addComment("open", 1);
    page.addComment("done", 2);
    ASSERT_TRUE(page.eventually("document.querySelectorAll('#comments > li').length === 2"));
    page.click("#comments > li:nth-child(2) [data-part=resolve]");
    auto const choose = [this](char const* choice) {
        page.run("const filter = document.getElementById('filter'); filter.value = '" + std::string{choice} +
                 "'; filter.dispatchEvent(new Event('change', { bubbles: true }));");
    };
    choose("resolved");
    EXPECT_TRUE(becomes("#comments [data-part=text]", "done"));
    EXPECT_TRUE(becomes("#count", "1"));
    choose("open");
    EXPECT_TRUE(becomes("#comments [data-part=text]", "open"));
}

TEST_F(ReviewPageWorkTest, OffersEveryFormatOfExport) {
    open();
    EXPECT_EQ(
        page.evaluate("return [...document.getElementById('export-format').options].map((o) => o.value);"),
        Json::parse(R"(["csv", "edl", "fcpxml", "ffmetadata", "kdenlive", "shotcut", "webvtt"])"));
    EXPECT_EQ(page.evaluate("return document.getElementById('cancel-export').disabled;"), true);
    page.click("#export");
    ASSERT_TRUE(becomes("#notice", "Export started."));
    page.answer("cancelExport", false);
    page.click("#cancel-export");
    EXPECT_TRUE(becomes("#notice", "No export was running."));
}

} // namespace
} // namespace workbench
