#include "PanelHarness.h"
#include "Workbench/ReviewPage/PageServer.h"

#include <gtest/gtest.h>

#include <iostream>

namespace workbench {
namespace {

using fcp::Json;
using fcp::Seconds;
using fcp::test::waitUntil;

// Reads the development page's address as that of a page server on a port of its own.
class PageAddress final : public fcp::UrlParser {
public:
    explicit PageAddress(std::string pageURL)
        : address(std::move(pageURL)) {}

    [[nodiscard]] std::optional<fcp::Url> parse(std::string const& text) const override {
        return parser.parse(text == "http://localhost:3000/fcp-panel/login" ? address : text);
    }

private:
    std::string const address;
    fcp::GLibUrlParser parser;
};

// The served page in the whole panel: real engine, bridge and bus. Host and container are the test's own.
class PanelPage : public testing::Test {
protected:
    PanelPage() {
        EXPECT_EQ(server.start(), std::nullopt);
        address = std::make_unique<PageAddress>(server.pageURL());
        auto& sequence = *panel.timeline().sequence;
        sequence.sequenceName = "Café 日本 🎬";
        sequence.length = fcp::test::mediaTime(7200, 1);
        panel.timeline().playhead = fcp::test::mediaTime(3, 2);
        panel.open(*address);
        EXPECT_TRUE(panel.waitForLine("info: didFinish: " + server.pageURL()));
        panel.mainLoop.elapse(Seconds(0.5));
        EXPECT_TRUE(becomes("#sequence-name", "Café 日本 🎬"));
    }

    [[nodiscard]] std::optional<Json> answer(Json const& command) const {
        if (!isContainerThere)
            return std::nullopt;
        return command.at("command") == "getMarkerAtTime" ? marker : Json(true);
    }

    [[nodiscard]] bool eventually(std::string const& expression) const {
        return waitUntil([&] { return panel.inPage("return Boolean(" + expression + ");") == true; });
    }

    [[nodiscard]] bool becomes(std::string const& selector, std::string const& text) const {
        return eventually("document.querySelector(" + Json(selector).dump() +
                          ")?.textContent === " + Json(text).dump());
    }

    void click(std::string const& selector) const {
        panel.inPage("document.querySelector(" + Json(selector).dump() + ").click();");
    }

    void type(std::string const& selector, std::string const& text) const {
        panel.inPage("const field = document.querySelector(" + Json(selector).dump() + "); field.value = " +
                     Json(text).dump() + "; field.dispatchEvent(new Event('input', { bubbles: true }));");
    }

    void addComment(std::string const& text) const {
        type("#new-comment", text);
        panel.inPage("document.getElementById('add').requestSubmit();");
    }

    void reload() {
        webkit_web_view_reload(panel.engineView());
        ASSERT_TRUE(panel.waitForLine("info: didFinish: " + server.pageURL(), ++loads));
    }

    // The last one of that name; null when there is none.
    [[nodiscard]] Json heard(std::string const& name) const {
        Json found;
        for (auto const& command : container.commands)
            if (command.at("command") == name)
                found = command;
        return found;
    }

    PageServer server{0};
    std::unique_ptr<PageAddress> address;
    fcp::test::PanelHarness panel;
    fcp::test::TestContainer container{panel.mainLoop,
                                       [this](Json const& command) { return answer(command); }};
    bool isContainerThere = true;
    Json marker;
    long loads = 1;
};

constexpr auto State = "#comments > li [data-part=state]";

TEST_F(PanelPage, FollowsThePlayheadAndSeeks) {
    EXPECT_TRUE(becomes("#timecode", "00:00:01;14"));
    panel.timeline().notifyPlayhead(61.0);
    EXPECT_TRUE(becomes("#timecode", "00:01:01;00"));
    addComment("  Größe des Titels 🎬 ");
    ASSERT_TRUE(becomes(State, "Synced"));
    auto const comment = heard("syncComment").at("comment");
    EXPECT_EQ(comment.at("text"), "Größe des Titels 🎬");
    EXPECT_EQ(comment.at("seconds"), 61.0);
    EXPECT_FALSE(comment.contains("state"));
    click("#comments .seek");
    ASSERT_TRUE(waitUntil([this] { return !panel.timeline().moves.empty(); }));
    EXPECT_EQ(panel.timeline().moves.back().value, 61 * 600);
}

TEST_F(PanelPage, MarksTheCommentWhoseMarkerWasClicked) {
    addComment("first");
    panel.timeline().notifyPlayhead(30.0);
    addComment("second");
    ASSERT_TRUE(eventually("document.querySelectorAll('.state[data-state=synced]').length === 2"));
    ASSERT_TRUE(becomes("#comments > li[aria-current] [data-part=text]", "second"));
    auto const id = panel.inPage("return document.querySelector('#comments > li').dataset.id;");
    marker = {{"id", id}, {"text", "first"}, {"start", 1.5}};
    panel.timeline().notifyPlayhead(1.6);
    EXPECT_TRUE(becomes("#comments > li[aria-current] [data-part=text]", "first"));
    EXPECT_TRUE(becomes("#notice", "Marker: first"));
}

TEST_F(PanelPage, LosesNothingWhileTheContainerIsAway) {
    isContainerThere = false;
    addComment("typed while nobody listens");
    type("#new-comment", "half a sent");
    ASSERT_TRUE(waitUntil([this] { return !heard("syncComment").is_null(); }));
    panel.mainLoop.elapse(Seconds(61));
    EXPECT_TRUE(becomes(State, "Not synced"));
    reload();
    EXPECT_TRUE(becomes("#comments [data-part=text]", "typed while nobody listens"));
    EXPECT_EQ(panel.inPage("return document.getElementById('new-comment').value;"), "half a sent");
    isContainerThere = true;
    click("#retry-all");
    EXPECT_TRUE(becomes(State, "Synced"));
    EXPECT_TRUE(eventually("document.getElementById('retry-all').hidden"));
}

TEST_F(PanelPage, HandsThousandsOfCommentsOverInOneGo) {
    panel.inPage(R"(
        const comments = Array.from({ length: 5000 }, (_, number) =>
            ({ id: `c${number}`, text: `Größe ${number}`, seconds: number, state: "failed", replies: [] }));
        localStorage.setItem('zelvix.comments:["Café 日本 🎬",29.97]', JSON.stringify(comments));
    )");
    isContainerThere = false;
    reload();
    ASSERT_TRUE(becomes("#count", "5,000"));
    EXPECT_LT(panel.inPage("return document.querySelectorAll('#comments > li').length;"), 60);
    isContainerThere = true;
    click("#sync-all");
    ASSERT_TRUE(eventually("/^5,000 comments synced in [0-9.]+ s\\.$/.test("
                           "document.getElementById('notice').textContent)"));
    std::cout << panel.inPage("return document.getElementById('notice').textContent;") << '\n';
    EXPECT_EQ(heard("syncAllComments").at("comments").size(), 5000U);
    EXPECT_EQ(heard("syncAllComments").at("comments").at(4999).at("text"), "Größe 4999");
    EXPECT_TRUE(eventually("document.getElementById('retry-all').hidden"));
}

TEST_F(PanelPage, StartsAndCancelsAnExport) {
    panel.inPage("const format = document.getElementById('export-format'); format.value = 'edl';"
                 "format.dispatchEvent(new Event('change', { bubbles: true }));");
    type("#export-fileName", "Größe");
    click("#export");
    EXPECT_TRUE(becomes("#notice", "Export started."));
    auto const settings = heard("startExport");
    EXPECT_EQ(settings.at("format"), "edl");
    EXPECT_EQ(settings.at("fileName"), "Größe");
    EXPECT_EQ(settings.at("frameRate"), 29.97);
    EXPECT_FALSE(settings.contains("folder"));
    click("#cancel-export");
    EXPECT_TRUE(becomes("#notice", "The export was cancelled."));
    EXPECT_FALSE(heard("cancelExport").is_null());
}

} // namespace
} // namespace workbench
