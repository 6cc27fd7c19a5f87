#include "Workbench/HostEditor/EditorWindow.h"

#include "Workbench/HostEditor/WaitUntil.h"
#include "Workbench/HostEditor/WindowFixture.h"

#include <gtest/gtest.h>
#include <gtkmm.h>

#include <memory>

namespace workbench {
namespace {

TEST_F(Window, NamesItsControls) {
    showFilm();
    for (auto const* const name : {"Play", "Next frame", "Previous frame", "First frame", "Last frame",
                                   "Timeline", "Sequence", "Timecode", "Frame", "Picture", "Review panel"})
        EXPECT_NE(workbench::find(*window, name), nullptr) << name;
}

TEST_F(Window, OffersTheSequencesAndShowsTheChosenOne) {
    show({"first.mp4", "second.mp4"});
    auto& choice = dynamic_cast<Gtk::DropDown&>(find("Sequence"));
    EXPECT_EQ(choice.get_selected(), 0U);
    choice.set_selected(1);
    EXPECT_EQ(editor.activeIndex(), 1U);
    EXPECT_EQ(window->get_title(), "second.mp4 – Zelvix Workbench");
    editor.seek(49);
    ASSERT_TRUE(waitFor(49));
    editor.activate(0);
    EXPECT_EQ(choice.get_selected(), 0U);
    EXPECT_EQ(editor.position(), 0);
}

TEST_F(Window, SaysWhatCouldNotBeOpenedAndGoesOn) {
    show({"nowhere.mp4", "first.mp4"});
    auto const said = texts(find("Messages"));
    ASSERT_FALSE(said.empty());
    EXPECT_EQ(said.front(),
              "cannot open " + (media->path / "nowhere.mp4").string() + ": there is no such file");
    EXPECT_EQ(editor.activeIndex(), 0U);
    click("Dismiss messages");
    ASSERT_TRUE(waitUntil([this] { return !find("Messages").get_visible(); }));
}

TEST_F(Window, OpensFurtherFilesBesideTheFirst) {
    showFilm();
    editor.open({(media->path / "second.mp4").string(), (media->path / "nowhere.mp4").string()});
    EXPECT_EQ(editor.activeIndex(), 1U);
    EXPECT_EQ(dynamic_cast<Gtk::DropDown&>(find("Sequence")).get_model()->get_n_items(), 2U);
    EXPECT_EQ(texts(find("Messages")).size(), 2U); // one of them is the button's
    editor.open({(media->path / "." / "first.mp4").string()});
    EXPECT_EQ(editor.sequences().size(), 2U);
    EXPECT_EQ(editor.activeIndex(), 0U);
    EXPECT_EQ(window->state().recentFiles,
              (std::vector<std::string>{media->path / "first.mp4", media->path / "second.mp4"}));
}

TEST_F(Window, OpensFilesFromADialog) {
    showFilm();
    auto const dialogs = [] {
        std::vector<GtkWindow*> found;
        std::unique_ptr<GList, decltype(&g_list_free)> const all{gtk_window_list_toplevels(), &g_list_free};
        for (auto const* item = all.get(); item; item = item->next)
            if (GTK_IS_FILE_CHOOSER(item->data))
                found.push_back(GTK_WINDOW(item->data));
        return found;
    };
    press("ctrl+o");
    ASSERT_TRUE(waitUntil([&] { return dialogs().size() == 1; }));
    auto* const dialog = dialogs().front();
    auto const file = Gio::File::create_for_path((media->path / "second.mp4").string());
    ASSERT_TRUE(gtk_file_chooser_set_file(GTK_FILE_CHOOSER(dialog), file->gobj(), nullptr));
    ASSERT_TRUE(waitUntil([&] {
        std::unique_ptr<GListModel, decltype(&g_object_unref)> const chosen{
            gtk_file_chooser_get_files(GTK_FILE_CHOOSER(dialog)), &g_object_unref};
        return g_list_model_get_n_items(chosen.get()) == 1;
    }));
    gtk_dialog_response(GTK_DIALOG(dialog), GTK_RESPONSE_ACCEPT);
    ASSERT_TRUE(waitUntil([this] { return editor.activeIndex() == 1U; }));
    EXPECT_EQ(editor.activeSequence()->name, "second.mp4");
    EXPECT_TRUE(waitUntil([&] { return dialogs().empty(); }));
}

TEST_F(Window, OpensFilesThatAreDroppedOnIt) {
    showFilm();
    auto* const target = [this]() -> GtkDropTarget* {
        std::unique_ptr<GListModel, decltype(&g_object_unref)> const all{
            gtk_widget_observe_controllers(GTK_WIDGET(window->gobj())), &g_object_unref};
        for (guint index = 0; index < g_list_model_get_n_items(all.get()); ++index) {
            std::unique_ptr<GObject, decltype(&g_object_unref)> const item{
                G_OBJECT(g_list_model_get_object(all.get(), index)), &g_object_unref};
            if (GTK_IS_DROP_TARGET(item.get()))
                return GTK_DROP_TARGET(item.get());
        }
        return nullptr;
    }();
    ASSERT_NE(target, nullptr);
    auto const file = Gio::File::create_for_path((media->path / "second.mp4").string());
    auto* const list = gdk_file_list_new_from_list(
        std::unique_ptr<GSList, decltype(&g_slist_free)>(g_slist_append(nullptr, file->gobj()), &g_slist_free)
            .get());
    GValue value = G_VALUE_INIT;
    g_value_init(&value, GDK_TYPE_FILE_LIST);
    g_value_take_boxed(&value, list);
    gboolean isTaken = FALSE;
    g_signal_emit_by_name(target, "drop", &value, 10.0, 10.0, &isTaken);
    g_value_unset(&value);
    EXPECT_TRUE(isTaken);
    EXPECT_EQ(editor.activeIndex(), 1U);
}

TEST_F(Window, OffersTheFilesThatWereOpenedLast) {
    present(WindowState{.size = {}, .panelWidth = {}, .recentFiles = {"/nowhere/gone.mp4"}});
    editor.open({(media->path / "first.mp4").string()});
    editor.open({(media->path / "second.mp4").string()});
    click("Recent files");
    auto const offered = [this] {
        auto all = texts(find("Recent files"));
        std::erase(all, "");
        return all;
    };
    EXPECT_EQ(offered(), (std::vector<std::string>{"second.mp4", "first.mp4", "gone.mp4"}));
    ASSERT_TRUE(waitUntil([this] { return find("first.mp4").get_mapped(); }));
    press("Tab Return");
    ASSERT_TRUE(waitUntil([this] { return editor.activeIndex() == 0U; }));
}

TEST_F(Window, ComesBackAsItWasLeft) {
    editor.open({(media->path / "first.mp4").string()});
    WindowState const earlier{
        .size = PixelSize{1100, 700}, .panelWidth = 300, .magnification = 2, .recentFiles = {"/films/a.mp4"}};
    present(earlier);
    EXPECT_NEAR(find("Review panel").get_width(), 300, 2);
    auto now = window->state();
    EXPECT_NEAR(now.panelWidth.value_or(0), 300, 2);
    now.panelWidth = 300;
    auto expected = earlier;
    expected.recentFiles.insert(expected.recentFiles.begin(), media->path / "first.mp4");
    EXPECT_EQ(now, expected);
}

TEST_F(Window, IsAnEmptyEditorWhenNothingCouldBeOpened) {
    show({"nowhere.mp4"});
    EXPECT_FALSE(editor.activeIndex());
    EXPECT_FALSE(find("Play").is_sensitive());
    EXPECT_FALSE(find("Sequence").get_visible());
    press("space Right End Home Left");
    clickTimeline(10, 100);
    EXPECT_FALSE(waitUntil([this] { return editor.isPlaying() || editor.position() != 0; }, 200));
    EXPECT_EQ(window->get_title(), "Zelvix Workbench");
}

TEST_F(Window, ShowsTheFilmInThePictureArea) {
    showFilm();
    auto& picture = find("Picture");
    EXPECT_GT(picture.get_width(), 400);
    EXPECT_GT(picture.get_height(), 200);
}

TEST_F(Window, LeavesThePanelTheWidthThatItWasMadeFor) {
    showFilm();
    EXPECT_NEAR(find("Review panel").get_width(), PanelPane::Width, 2);
}

TEST_F(Window, ShowsOnTheDividerWhoIsConnected) {
    showFilm();
    auto& light = find("Connections");
    auto const says = [&](std::string const& text) {
        std::unique_ptr<char, decltype(&g_free)> const mismatch{
            gtk_test_accessible_check_property(GTK_ACCESSIBLE(light.gobj()),
                                               GTK_ACCESSIBLE_PROPERTY_DESCRIPTION, text.c_str(), nullptr),
            &g_free};
        return !mismatch;
    };
    EXPECT_TRUE(says("host away, page away, container away"));
    window->showConnections({.host = true, .page = false, .container = true});
    EXPECT_TRUE(says("host connected, page away, container connected"));
    EXPECT_EQ(light.get_tooltip_text(), "Host: the panel follows the timeline\n"
                                        "Page: nothing has been heard of it\nContainer: it is on the bus");
    auto const middle = [](Gtk::Widget& widget, std::pair<int, int> const& corner) {
        return corner.first + widget.get_width() / 2;
    };
    auto& panel = find("Review panel");
    EXPECT_NEAR(middle(light, place(light, 0, 0)), place(panel, 0, 0).first, 3);
}

TEST_F(Window, LeavesThePanelItsKeys) {
    showFilm();
    auto* const entry = Gtk::make_managed<Gtk::Entry>();
    window->panel().hold(GTK_WIDGET(g_object_ref(entry->gobj())));
    entry->grab_focus();
    press("a space b");
    ASSERT_TRUE(waitUntil([&] { return entry->get_text() == "a b"; }));
    EXPECT_FALSE(editor.isPlaying());
}

} // namespace
} // namespace workbench
