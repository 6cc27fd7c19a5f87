#include "Workbench/ContainerApp/BusClient.h"
#include "Workbench/ContainerApp/ContainerProcess.h"
#include "Workbench/ContainerApp/MainWindow.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <optional>

namespace workbench {

namespace {

// The texts of all labels that can be seen in a widget, in their order.
void collectTexts(GtkWidget* widget, std::vector<std::string>& texts) {
    if (!gtk_widget_get_mapped(widget))
        return;
    if (GTK_IS_LABEL(widget))
        texts.emplace_back(gtk_label_get_text(GTK_LABEL(widget)));
    for (auto* child = gtk_widget_get_first_child(widget); child; child = gtk_widget_get_next_sibling(child))
        collectTexts(child, texts);
}

class MainWindowTest : public testing::Test {
protected:
    MainWindowTest() { window.show(); }

    std::string texts() {
        auto collected = std::vector<std::string>{};
        collectTexts(GTK_WIDGET(window.gobj()), collected);
        auto text = std::string{};
        for (auto const& each : collected)
            text += each + "|";
        return text;
    }

    [[nodiscard]] bool shows(std::string const& expected) {
        return waitUntil([&] {
            while (g_main_context_iteration(nullptr, FALSE)) {
            }
            return texts() == expected;
        });
    }

    int closed = 0;
    MainWindow window{[this] { ++closed; }};
};

constexpr char const* columnTitles = "TIME|AUTHOR|COMMENT|";

WindowContent::CommentRow row(std::string const& time, std::string const& text) {
    return {.time = time, .author = "Ana", .text = text};
}

// The real program with its window, and a person in front of it.
class FolderDialogTest : public testing::Test {
protected:
    FolderDialogTest() {
        container.emplace(std::vector<std::string>{"--database", folder / "store.sqlite"});
        EXPECT_TRUE(container->isReady()) << container->complaints();
    }

    static std::string dialog() {
        return outputOf("xdotool search --onlyvisible --name '^Choose the folder for exports$' 2>/dev/null");
    }

    [[nodiscard]] static bool isOpen() {
        return waitUntil([] { return !dialog().empty(); });
    }

    [[nodiscard]] static bool isClosed() {
        return waitUntil([] { return dialog().empty(); });
    }

    // Its buttons stand at the lower right.
    static void press(int fromRight) {
        auto const script = "eval $(xdotool getwindowgeometry --shell " +
                            dialog().substr(0, dialog().find('\n')) +
                            "); xdotool mousemove $X $Y mousemove $((X + WIDTH - " +
                            std::to_string(fromRight) + ")) $((Y + HEIGHT - 24)) click 1";
        std::ignore = outputOf(script);
    }

    [[nodiscard]] bool isAnswered(std::string const& requestId) {
        return client.waitFor([&] { return !client.answers(requestId).empty(); });
    }

    // A window that has just come up does not take every click; a person clicks again.
    [[nodiscard]] bool isAnsweredBy(int button, std::string const& requestId) {
        auto nextClick = std::chrono::steady_clock::time_point{};
        return client.waitFor([&] {
            auto const now = std::chrono::steady_clock::now();
            if (client.answers(requestId).empty() && now >= nextClick) {
                press(button);
                nextClick = now + std::chrono::seconds{2};
            }
            return !client.answers(requestId).empty();
        });
    }

    static constexpr auto choose = 50;
    static constexpr auto cancel = 130;

    TemporaryFolder folder;
    BusClient client;
    std::optional<ContainerProcess> container;
    std::string const documents = std::string{std::getenv("HOME")} + "/Documents";
};

} // namespace

TEST_F(MainWindowTest, InvitesCommentsWhenThereAreNone) {
    window.showContent({.sequence = "Reel 1", .summary = "No comments", .comments = {}, .exports = {}});
    EXPECT_TRUE(shows("Reel 1|No comments|Comments appear here when the panel sends them.|")) << texts();
}

TEST_F(MainWindowTest, ListsTimeAuthorAndText) {
    auto content =
        WindowContent{.sequence = "Reel 1", .summary = "2 comments", .comments = {}, .exports = {}};
    content.comments = {row("00:00:01:00", "Logo"), row("00:00:02:00", "Too loud")};
    window.showContent(content);
    EXPECT_TRUE(shows(std::string{"Reel 1|2 comments|"} + columnTitles +
                      "00:00:01:00|Ana|Logo|00:00:02:00|Ana|Too loud|"))
        << texts();
}

TEST_F(MainWindowTest, FollowsChangesInTheMiddleOfTheList) {
    auto content = WindowContent{};
    content.comments = {row("1", "a"), row("2", "b"), row("3", "c")};
    window.showContent(content);
    ASSERT_TRUE(shows(std::string{"||"} + columnTitles + "1|Ana|a|2|Ana|b|3|Ana|c|")) << texts();
    content.comments = {row("1", "a"), row("2", "x"), row("2", "y"), row("3", "c")};
    window.showContent(content);
    EXPECT_TRUE(shows(std::string{"||"} + columnTitles + "1|Ana|a|2|Ana|x|2|Ana|y|3|Ana|c|")) << texts();
    content.comments = {row("3", "c")};
    window.showContent(content);
    EXPECT_TRUE(shows(std::string{"||"} + columnTitles + "3|Ana|c|")) << texts();
    content.comments = {};
    window.showContent(content);
    EXPECT_TRUE(shows("||Comments appear here when the panel sends them.|")) << texts();
}

TEST_F(MainWindowTest, ListsExports) {
    auto content = WindowContent{};
    content.exports = {{"09:30", "/films/a.csv", ExportState::Done},
                       {"09:29", "Failed: full", ExportState::Failed}};
    window.showContent(content);
    EXPECT_TRUE(shows("||Comments appear here when the panel sends them.|Exports|09:30   /films/a.csv|"
                      "09:29   Failed: full|"))
        << texts();
}

TEST_F(MainWindowTest, ShowsWhatWentWrong) {
    window.showContent({});
    window.showProblem("the disk is full");
    EXPECT_TRUE(shows("||Comments appear here when the panel sends them.|The disk is full|")) << texts();
}

TEST_F(MainWindowTest, ShowsTenThousandCommentsWithoutMakingARowForEach) {
    auto content = WindowContent{};
    for (auto number = 0; number < 10'000; ++number)
        content.comments.push_back(row(std::to_string(number), "text"));
    window.showContent(content);
    ASSERT_TRUE(waitUntil([&] {
        while (g_main_context_iteration(nullptr, FALSE)) {
        }
        return texts().find("|3|Ana|") != std::string::npos;
    }));
    EXPECT_LT(texts().size(), 20'000U);
}

TEST_F(MainWindowTest, LeavesItToTheProgramWhatClosingMeans) {
    window.close();
    EXPECT_EQ(1, closed);
    EXPECT_TRUE(window.get_visible());
}

TEST_F(FolderDialogTest, AnswersTheFolderThatThePersonChooses) {
    auto const requestId = client.send("selectOutputFolder");
    ASSERT_TRUE(isOpen());
    EXPECT_TRUE(client.answers(requestId).empty());
    ASSERT_TRUE(isAnsweredBy(choose, requestId));
    EXPECT_EQ(std::vector{Json(documents)}, client.answers(requestId));
    EXPECT_EQ(documents + "\n", outputOf("sqlite3 '" + folder / "store.sqlite" +
                                         "' \"SELECT value FROM settings WHERE key = 'outputFolder'\""));
}

TEST_F(FolderDialogTest, AnswersNullWhenThePersonChoosesNone) {
    auto const requestId = client.send("selectOutputFolder");
    ASSERT_TRUE(isOpen());
    ASSERT_TRUE(isAnsweredBy(cancel, requestId));
    EXPECT_EQ(std::vector{Json(nullptr)}, client.answers(requestId));
    EXPECT_TRUE(isClosed());
}

TEST_F(FolderDialogTest, LetsASecondRequestJoinAndAnswersOtherCommandsMeanwhile) {
    auto const first = client.send("selectOutputFolder");
    ASSERT_TRUE(isOpen());
    auto const second = client.send("selectOutputFolder");
    EXPECT_EQ(true, client.request("syncComment", {{"comment", {{"id", "a"}, {"seconds", 1}}}}));
    auto const dialogs = dialog();
    EXPECT_EQ(1, std::count(dialogs.begin(), dialogs.end(), '\n')) << dialogs;
    ASSERT_TRUE(isAnsweredBy(choose, second));
    EXPECT_EQ(std::vector{Json(documents)}, client.answers(first));
    EXPECT_EQ(std::vector{Json(documents)}, client.answers(second));
}

TEST_F(FolderDialogTest, OpensAgainAfterItWasClosed) {
    for (auto round = 0; round < 2; ++round) {
        auto const requestId = client.send("selectOutputFolder");
        ASSERT_TRUE(isOpen());
        ASSERT_TRUE(isAnsweredBy(cancel, requestId));
        ASSERT_TRUE(isClosed());
    }
}

TEST_F(FolderDialogTest, IsAnsweredNullWhenTheProgramEnds) {
    auto const requestId = client.send("selectOutputFolder");
    ASSERT_TRUE(isOpen());
    container->signal(SIGTERM);
    EXPECT_EQ(0, container->wait());
    ASSERT_TRUE(isAnswered(requestId));
    EXPECT_EQ(std::vector{Json(nullptr)}, client.answers(requestId));
}

TEST(WithoutADisplay, RunsWithoutAWindow) {
    auto const display = std::string{std::getenv("DISPLAY")};
    ::unsetenv("DISPLAY");
    auto const folder = TemporaryFolder{};
    auto container = ContainerProcess{{"--database", folder / "store.sqlite"}};
    ::setenv("DISPLAY", display.c_str(), 1);
    ASSERT_TRUE(container.isReady());
    EXPECT_EQ("zelvix-container: there is no display; running without a window\n", container.complaints());
    auto client = BusClient{};
    EXPECT_EQ(nullptr, client.request("selectOutputFolder"));
    EXPECT_EQ(true, client.request("syncComment", {{"comment", {{"id", "a"}, {"seconds", 1}}}}));
}

} // namespace workbench

int main(int count, char** arguments) {
    // The file dialog keeps its settings; without this it looks for a service that the tests' bus does not
    // have.
    ::setenv("GSETTINGS_BACKEND", "memory", 1);
    testing::InitGoogleTest(&count, arguments);
    if (!workbench::startToolkit())
        return 1;
    return RUN_ALL_TESTS();
}
