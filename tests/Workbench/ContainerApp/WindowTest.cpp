#include "Workbench/ContainerApp/MainWindow.h"

#include "Workbench/ContainerApp/ContainerProcess.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <cstdlib>

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

    // Waits until all of it stands in the window, in this order.
    [[nodiscard]] bool shows(std::string const& expected) {
        return waitUntil([&] {
            settle();
            return texts().find(expected) != std::string::npos;
        });
    }

    static void settle() {
        while (g_main_context_iteration(nullptr, FALSE)) {
        }
    }

    [[nodiscard]] static WindowContent content() {
        return {.sequences = {{"one", "Reel 1"}, {"two", "Reel 2"}},
                .shown = "one",
                .folder = "/films",
                .summary = "2 comments",
                .comments = {},
                .exports = {}};
    }

    // The first widget of this kind, deep in the window, that can be seen.
    template <class IsIt>
    GtkWidget* find(IsIt const& isIt, GtkWidget* from = nullptr) {
        auto* const widget = from ? from : GTK_WIDGET(window.gobj());
        if (!gtk_widget_get_mapped(widget))
            return nullptr;
        if (isIt(widget))
            return widget;
        GtkWidget* found = nullptr;
        for (auto* child = gtk_widget_get_first_child(widget); child && !found;
             child = gtk_widget_get_next_sibling(child))
            found = find(isIt, child);
        return found;
    }

    GtkWidget* button(std::string const& label) {
        return find([&label](GtkWidget* widget) {
            auto const* const text =
                GTK_IS_BUTTON(widget) ? gtk_button_get_label(GTK_BUTTON(widget)) : nullptr;
            return text && label == text;
        });
    }

    void click(std::string const& label) {
        auto* const found = button(label);
        ASSERT_NE(nullptr, found) << label;
        g_signal_emit_by_name(found, "clicked");
        settle();
    }

    // The number of the drop-down with this place in the window, from 0.
    GtkDropDown* choice(int place) {
        return GTK_DROP_DOWN(
            find([&place](GtkWidget* widget) { return GTK_IS_DROP_DOWN(widget) && place-- == 0; }));
    }

    std::string asked;
    MainWindow window{
        {.close = [this] { asked += "close "; },
         .showSequence = [this](std::string const& key) { asked += "show:" + key + " "; },
         .startExport = [this](std::string const& format) { asked += "export:" + format + " "; },
         .cancelExport = [this] { asked += "cancel "; },
         .changeFolder = [this] { asked += "folder "; },
         .import = [this] { asked += "import "; }}};
};

constexpr auto inviting = "|Comments appear here when the panel sends them, or when they are imported.|";
constexpr auto columnTitles = "|TIME|AUTHOR|COMMENT|";

WindowContent::CommentRow row(std::string const& time, std::string const& text) {
    return {.time = time, .author = "Ana", .text = text};
}

} // namespace

TEST_F(MainWindowTest, InvitesCommentsWhenThereAreNone) {
    window.showContent(content());
    EXPECT_TRUE(shows(std::string{"|2 comments"} + inviting)) << texts();
    EXPECT_TRUE(shows("Reel 1|")) << texts();
    EXPECT_TRUE(shows("|/films|")) << texts();
}

TEST_F(MainWindowTest, ListsTimeAuthorAndText) {
    auto shown = content();
    shown.comments = {row("00:00:01:00", "Logo"), row("00:00:02:00", "Too loud")};
    window.showContent(shown);
    EXPECT_TRUE(shows(columnTitles + std::string{"00:00:01:00|Ana|Logo|00:00:02:00|Ana|Too loud|"}))
        << texts();
}

TEST_F(MainWindowTest, FollowsChangesInTheMiddleOfTheList) {
    auto shown = content();
    shown.comments = {row("1", "a"), row("2", "b"), row("3", "c")};
    window.showContent(shown);
    ASSERT_TRUE(shows(columnTitles + std::string{"1|Ana|a|2|Ana|b|3|Ana|c|"})) << texts();
    shown.comments = {row("1", "a"), row("2", "x"), row("2", "y"), row("3", "c")};
    window.showContent(shown);
    EXPECT_TRUE(shows(columnTitles + std::string{"1|Ana|a|2|Ana|x|2|Ana|y|3|Ana|c|"})) << texts();
    shown.comments = {row("3", "c")};
    window.showContent(shown);
    EXPECT_TRUE(shows(columnTitles + std::string{"3|Ana|c|"})) << texts();
    shown.comments = {};
    window.showContent(shown);
    EXPECT_TRUE(shows(inviting)) << texts();
}

TEST_F(MainWindowTest, LetsThePersonChooseASequence) {
    window.showContent(content());
    settle();
    auto* const sequences = choice(0);
    ASSERT_NE(nullptr, sequences);
    EXPECT_EQ(0U, gtk_drop_down_get_selected(sequences));
    gtk_drop_down_set_selected(sequences, 1);
    EXPECT_EQ("show:two ", asked);
}

TEST_F(MainWindowTest, TakesNoChangeFromOutsideForAChoice) {
    window.showContent(content());
    auto shown = content();
    shown.sequences = {{"three", "Reel 3"}, {"one", "Reel 1"}, {"two", "Reel 2"}};
    shown.shown = "two";
    window.showContent(shown);
    settle();
    EXPECT_EQ("", asked);
    EXPECT_EQ(2U, gtk_drop_down_get_selected(choice(0)));
}

TEST_F(MainWindowTest, AsksForWhatItsButtonsSay) {
    window.showContent(content());
    settle();
    click("_Import…");
    click("_Change…");
    click("_Export");
    gtk_drop_down_set_selected(choice(1), 2);
    click("_Export");
    EXPECT_EQ("import folder export:csv export:fcpxml ", asked);
}

TEST_F(MainWindowTest, ShowsHowFarAnExportIsAndLetsItBeCancelled) {
    window.showContent(content());
    settle();
    EXPECT_EQ(nullptr, button("C_ancel"));
    window.showProgress(0.25);
    settle();
    auto* const bar = find([](GtkWidget* widget) { return GTK_IS_PROGRESS_BAR(widget); });
    ASSERT_NE(nullptr, bar);
    EXPECT_EQ(0.25, gtk_progress_bar_get_fraction(GTK_PROGRESS_BAR(bar)));
    EXPECT_FALSE(gtk_widget_get_sensitive(button("_Export")));
    click("C_ancel");
    EXPECT_EQ("cancel ", asked);
    window.showProgress({});
    settle();
    EXPECT_EQ(nullptr, button("C_ancel"));
    EXPECT_TRUE(gtk_widget_get_sensitive(button("_Export")));
}

TEST_F(MainWindowTest, NamesWhatShowsNoNameForScreenReaders) {
    auto shown = content();
    shown.comments = {row("1", "a")};
    window.showContent(shown);
    window.showProgress(0.5);
    settle();
    auto const nameIs = [](GtkWidget* widget, char const* name) {
        auto* const difference =
            gtk_test_accessible_check_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_LABEL, name);
        EXPECT_EQ(nullptr, difference) << difference;
    };
    nameIs(GTK_WIDGET(choice(0)), "Sequence");
    nameIs(GTK_WIDGET(choice(1)), "Format of the export");
    nameIs(find([](GtkWidget* widget) { return GTK_IS_PROGRESS_BAR(widget); }), "Progress of the export");
    nameIs(find([](GtkWidget* widget) { return GTK_IS_COLUMN_VIEW(widget); }), "Comments");
}

TEST_F(MainWindowTest, ListsExports) {
    auto shown = content();
    shown.exports = {{"09:30", "/films/a.csv", ExportState::Done},
                     {"09:29", "Failed: full", ExportState::Failed}};
    window.showContent(shown);
    EXPECT_TRUE(shows("|09:30   /films/a.csv|09:29   Failed: full|")) << texts();
}

TEST_F(MainWindowTest, ShowsWhatWentWrongAndWhatWasDone) {
    window.showContent(content());
    window.showProblem("the disk is full");
    EXPECT_TRUE(shows("|The disk is full|")) << texts();
    window.showNews("imported 2 comments");
    EXPECT_TRUE(shows("|Imported 2 comments|")) << texts();
    EXPECT_EQ(std::string::npos, texts().find("disk"));
}

TEST_F(MainWindowTest, ShowsTenThousandCommentsWithoutMakingARowForEach) {
    auto shown = content();
    for (auto number = 0; number < 10'000; ++number)
        shown.comments.push_back(row(std::to_string(number), "text"));
    window.showContent(shown);
    ASSERT_TRUE(shows("|3|Ana|"));
    EXPECT_LT(texts().size(), 20'000U);
}

TEST_F(MainWindowTest, LeavesItToTheProgramWhatClosingMeans) {
    window.close();
    EXPECT_EQ("close ", asked);
    EXPECT_TRUE(window.get_visible());
}

} // namespace workbench

int main(int count, char** arguments) {
    ::setenv("GTK_A11Y", "test", 1); // names for screen readers, but no service that speaks them
    testing::InitGoogleTest(&count, arguments);
    if (!workbench::startToolkit())
        return 1;
    return RUN_ALL_TESTS();
}
