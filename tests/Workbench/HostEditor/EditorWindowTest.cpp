#include "Workbench/HostEditor/EditorWindow.h"

#include "Workbench/HostEditor/Clips.h"
#include "Workbench/HostEditor/Editor.h"
#include "Workbench/HostEditor/Journal.h"
#include "Workbench/HostEditor/MediaEngine.h"
#include "Workbench/HostEditor/PinButton.h"
#include "Workbench/HostEditor/Style.h"
#include "Workbench/HostEditor/TemporaryFolder.h"
#include "Workbench/HostEditor/WaitUntil.h"

#include <gtest/gtest.h>
#include <gtkmm.h>
#include <gtkmm/init.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace workbench {
namespace {

// The user's hands: real keys and a real pointer, through the display.
void press(std::string const& keys) {
    runCommand("xdotool key " + keys);
}

void clickAt(int x, int y) {
    runCommand("xdotool mousemove " + std::to_string(x) + " " + std::to_string(y) + " click 1");
}

bool hasName(Gtk::Widget& widget, std::string const& name) {
    std::unique_ptr<char, decltype(&g_free)> const mismatch{
        gtk_test_accessible_check_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                           name.c_str(), nullptr),
        &g_free};
    return !mismatch;
}

Gtk::Widget* find(Gtk::Widget& from, std::string const& name) {
    if (hasName(from, name))
        return &from;
    for (auto* child = from.get_first_child(); child; child = child->get_next_sibling())
        if (auto* const found = find(*child, name))
            return found;
    return nullptr;
}

std::vector<std::string> texts(Gtk::Widget& from) {
    std::vector<std::string> all;
    if (auto const* const label = dynamic_cast<Gtk::Label*>(&from))
        all.push_back(label->get_text());
    for (auto* child = from.get_first_child(); child; child = child->get_next_sibling())
        for (auto& text : texts(*child))
            all.push_back(std::move(text));
    return all;
}

class Window : public testing::Test {
protected:
    static void SetUpTestSuite() {
        setenv("GTK_A11Y", "test", 1);
        setenv("GSETTINGS_BACKEND", "memory", 1); // what the file dialog keeps
        ASSERT_TRUE(gtk_init_check());
        Gtk::init_gtkmm_internals();
        Glib::set_prgname("editor_window_test");
        Glib::set_application_name("Editor window test");
        g_log_set_always_fatal(static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING));
        installStyle();
        engine = std::make_unique<MediaEngine>();
        media = std::make_unique<TemporaryFolder>();
        makeClip(media->path / "first.mp4", {30000, 1001}, 120);
        makeClip(media->path / "second.mp4", {25, 1}, 50);
    }

    static void TearDownTestSuite() {
        media.reset();
        engine.reset();
    }

    void SetUp() override {
        editor.signalPicture().connect([this](Picture const&) { ++pictures; });
    }

    void show(std::vector<std::string> const& names) {
        std::vector<std::string> files;
        for (auto const& name : names)
            files.push_back((media->path / name).string());
        editor.open(files);
        window.emplace(editor, WindowState{});
        window->present();
        ASSERT_TRUE(waitUntil([this] { return window->is_active() && find("Timeline").get_width() > 100; }));
    }

    void showFilm() {
        show({"first.mp4"});
        ASSERT_TRUE(waitUntil([this] { return pictures > 0; }));
    }

    Gtk::Widget& find(std::string const& name) {
        auto* const widget = workbench::find(*window, name);
        EXPECT_NE(widget, nullptr) << name;
        return widget ? *widget : *window;
    }

    // A point of a widget on the screen: without a window manager the window begins at its corner.
    std::pair<int, int> place(Gtk::Widget& widget, double x, double y) {
        double left = 0;
        double top = 0;
        double windowLeft = 0;
        double windowTop = 0;
        widget.translate_coordinates(*window, x, y, left, top);
        gtk_native_get_surface_transform(GTK_NATIVE(window->gobj()), &windowLeft, &windowTop);
        return {static_cast<int>(std::lround(left + windowLeft)),
                static_cast<int>(std::lround(top + windowTop))};
    }

    void click(std::string const& name) {
        auto& widget = find(name);
        auto const [x, y] = place(widget, widget.get_width() / 2.0, widget.get_height() / 2.0);
        clickAt(x, y);
    }

    void clickTimeline(std::int64_t frame, std::int64_t length) {
        auto& timeline = find("Timeline");
        auto const room = timeline.get_width() - 2.0 * TimelineView::Margin;
        auto const x =
            TimelineView::Margin + room * (static_cast<double>(frame) + 0.5) / static_cast<double>(length);
        auto const [left, top] = place(timeline, x, timeline.get_height() - 20.0);
        clickAt(left, top);
    }

    bool isTyping() { return find("Go to timecode").get_mapped(); }

    bool waitFor(std::int64_t frame) {
        return waitUntil([this, frame] { return editor.position() == frame; });
    }

    static inline std::unique_ptr<MediaEngine> engine;
    static inline std::unique_ptr<TemporaryFolder> media;
    Journal journal;
    Editor editor{journal};
    int pictures = 0;
    std::optional<EditorWindow> window;
};

TEST_F(Window, NamesItsControls) {
    showFilm();
    for (auto const* const name : {"Play", "Next frame", "Previous frame", "First frame", "Last frame",
                                   "Timeline", "Sequence", "Timecode", "Frame", "Picture", "Review panel"})
        EXPECT_NE(workbench::find(*window, name), nullptr) << name;
}

TEST_F(Window, PlaysAndPausesWithSpaceAndButton) {
    showFilm();
    press("space");
    ASSERT_TRUE(waitUntil([this] { return editor.isPlaying() && editor.position() > 3; }));
    press("space");
    ASSERT_TRUE(waitUntil([this] { return !editor.isPlaying(); }));
    click("Play");
    ASSERT_TRUE(waitUntil([this] { return editor.isPlaying(); }));
    EXPECT_TRUE(dynamic_cast<Gtk::ToggleButton&>(find("Play")).get_active());
    click("Play");
    ASSERT_TRUE(waitUntil([this] { return !editor.isPlaying(); }));
    EXPECT_FALSE(dynamic_cast<Gtk::ToggleButton&>(find("Play")).get_active());
}

TEST_F(Window, StepsAndJumpsWithKeys) {
    showFilm();
    press("Right Right Right");
    ASSERT_TRUE(waitFor(3));
    press("Left");
    ASSERT_TRUE(waitFor(2));
    press("End");
    ASSERT_TRUE(waitFor(119));
    press("shift+Left");
    ASSERT_TRUE(waitFor(90));
    press("Home");
    ASSERT_TRUE(waitFor(0));
}

TEST_F(Window, StepsAndJumpsWithButtons) {
    showFilm();
    click("Next frame");
    ASSERT_TRUE(waitFor(1));
    click("Last frame");
    ASSERT_TRUE(waitFor(119));
    click("Previous frame");
    ASSERT_TRUE(waitFor(118));
    click("First frame");
    ASSERT_TRUE(waitFor(0));
}

TEST_F(Window, PlaysFasterAndBackwardsWithTheShuttleKeys) {
    showFilm();
    auto const speedReads = [this](double speed, std::string const& text) {
        return waitUntil([&] {
            return editor.speed() == speed &&
                   dynamic_cast<Gtk::Label&>(find("Speed")).get_text().raw() == text;
        });
    };
    press("End");
    ASSERT_TRUE(waitFor(119));
    press("j");
    EXPECT_TRUE(speedReads(-1, "−1×"));
    press("j");
    EXPECT_TRUE(speedReads(-2, "−2×"));
    ASSERT_TRUE(waitUntil([this] { return editor.position() < 110; }));
    press("l");
    EXPECT_TRUE(speedReads(1, ""));
    press("k");
    EXPECT_TRUE(speedReads(0, ""));
    EXPECT_FALSE(dynamic_cast<Gtk::ToggleButton&>(find("Play")).get_active());
}

TEST_F(Window, StepsWithTheShuttleKeysWhilePauseIsHeld) {
    showFilm();
    runCommand("xdotool keydown k key l l l keyup k");
    ASSERT_TRUE(waitFor(3));
    runCommand("xdotool keydown k key j keyup k");
    ASSERT_TRUE(waitFor(2));
    EXPECT_FALSE(editor.isPlaying());
}

TEST_F(Window, GoesFromCommentToComment) {
    showFilm();
    EXPECT_FALSE(find("Next comment").is_sensitive());
    std::vector<Pin> pins;
    for (auto const frame : {20, 40, 80})
        pins.push_back({.id = {}, .start = frame * 1001 / 30000.0, .text = "x", .author = {}, .colour = {}});
    window->showPins(pins, true);
    press("Down Down");
    ASSERT_TRUE(waitFor(40));
    press("Up");
    ASSERT_TRUE(waitFor(20));
    press("Up");
    click("Next comment");
    ASSERT_TRUE(waitFor(40));
    click("Previous comment");
    ASSERT_TRUE(waitFor(20));
}

TEST_F(Window, MagnifiesTheTimelineAroundThePlayhead) {
    showFilm();
    auto& timeline = dynamic_cast<TimelineView&>(find("Timeline"));
    auto const isMagnified = [&](double times) {
        return waitUntil([&] { return std::abs(timeline.magnification() - times) < 1e-9; });
    };
    press("plus plus");
    EXPECT_TRUE(isMagnified(2.25));
    press("minus");
    EXPECT_TRUE(isMagnified(1.5));
    click("Zoom in");
    EXPECT_TRUE(isMagnified(2.25));
    click("Zoom out");
    EXPECT_TRUE(isMagnified(1.5));
    click("Show all");
    EXPECT_TRUE(isMagnified(1));
    press("plus f");
    EXPECT_TRUE(isMagnified(1));
    EXPECT_EQ(editor.target(), 0);
}

TEST_F(Window, ScrollsTheMagnifiedTimelineWithTheWheel) {
    showFilm();
    auto& timeline = dynamic_cast<TimelineView&>(find("Timeline"));
    auto const [x, y] = place(timeline, TimelineView::Margin, timeline.get_height() - 20.0);
    runCommand("xdotool mousemove " + std::to_string(x) + " " + std::to_string(y) +
               " keydown ctrl click 4 click 4 click 4 click 4 keyup ctrl");
    ASSERT_TRUE(waitUntil([&] { return timeline.magnification() > 2.4; }));
    auto& bar = dynamic_cast<Gtk::Scrollbar&>(find("Timeline position"));
    EXPECT_TRUE(bar.get_child_visible());
    EXPECT_EQ(bar.get_adjustment()->get_value(), 0);
    runCommand("xdotool click 5 click 5");
    ASSERT_TRUE(waitUntil([&] { return bar.get_adjustment()->get_value() == 160; }));
    // The frame below the pointer is the one that the scale has there.
    auto const room = timeline.get_width() - 2.0 * TimelineView::Margin;
    auto const frame = static_cast<std::int64_t>((160 + 100) * 120 / (room * timeline.magnification()));
    clickAt(x + 100, y);
    ASSERT_TRUE(waitFor(frame));
    press("Page_Up");
    ASSERT_TRUE(waitUntil([&] { return bar.get_adjustment()->get_value() == 0; }));
}

TEST_F(Window, KeepsThePlayheadInSight) {
    showFilm();
    auto& timeline = dynamic_cast<TimelineView&>(find("Timeline"));
    timeline.setMagnification(6);
    auto const adjustment = dynamic_cast<Gtk::Scrollbar&>(find("Timeline position")).get_adjustment();
    auto const isInSight = [&](std::int64_t frame) {
        auto const position = adjustment->get_upper() * static_cast<double>(frame) / 120;
        return position >= adjustment->get_value() &&
               position <= adjustment->get_value() + adjustment->get_page_size();
    };
    editor.seek(60);
    ASSERT_TRUE(waitFor(60));
    EXPECT_TRUE(isInSight(60));
    EXPECT_FALSE(isInSight(0));
    auto const before = adjustment->get_value();
    press("space");
    ASSERT_TRUE(waitUntil([&] {
        EXPECT_TRUE(isInSight(editor.target())) << editor.target();
        return adjustment->get_value() > before;
    }));
    press("space");
    ASSERT_TRUE(waitUntil([this] { return !editor.isPlaying(); }));
}

TEST_F(Window, MakesNoPinsOutOfSight) {
    showFilm();
    std::vector<Pin> pins;
    for (auto frame = 0; frame < 120; ++frame)
        pins.push_back({.id = {},
                        .start = frame * 1001 / 30000.0,
                        .text = std::to_string(frame),
                        .author = {},
                        .colour = {}});
    auto& timeline = dynamic_cast<TimelineView&>(find("Timeline"));
    timeline.setMagnification(6);
    window->showPins(pins, true);
    EXPECT_NE(workbench::find(*window, "Comment, 3"), nullptr);
    EXPECT_EQ(workbench::find(*window, "Comment, 60"), nullptr);
    timeline.scrollPages(3);
    EXPECT_EQ(workbench::find(*window, "Comment, 3"), nullptr);
    EXPECT_NE(workbench::find(*window, "Comment, 64"), nullptr);
}

TEST_F(Window, KeepsTheKeysAfterAButtonWasClicked) {
    showFilm();
    click("Next frame");
    ASSERT_TRUE(waitFor(1));
    press("space");
    ASSERT_TRUE(waitUntil([this] { return editor.isPlaying(); }));
}

TEST_F(Window, MovesThePlayheadToAClickOnTheTimeline) {
    showFilm();
    for (auto const frame : {60, 0, 119, 17}) {
        clickTimeline(frame, 120);
        ASSERT_TRUE(waitFor(frame)) << frame;
    }
}

TEST_F(Window, ShowsTimecodeAndFrame) {
    showFilm();
    editor.seek(100);
    ASSERT_TRUE(waitFor(100));
    EXPECT_EQ(dynamic_cast<Gtk::Label&>(find("Timecode")).get_text(), "00:00:03;10");
    EXPECT_EQ(dynamic_cast<Gtk::Label&>(find("Frame")).get_text(), "frame 100");
    std::unique_ptr<char, decltype(&g_free)> const mismatch{
        gtk_test_accessible_check_property(GTK_ACCESSIBLE(find("Timeline").gobj()),
                                           GTK_ACCESSIBLE_PROPERTY_VALUE_TEXT, "00:00:03;10", nullptr),
        &g_free};
    EXPECT_EQ(mismatch.get(), nullptr);
}

TEST_F(Window, GoesToATypedTimecode) {
    showFilm();
    click("Enter a timecode");
    ASSERT_TRUE(waitUntil([this] { return isTyping(); }));
    press("2 semicolon 0 5 Return");
    ASSERT_TRUE(waitFor(65));
    EXPECT_FALSE(isTyping());
    press("1 0 0 Return");
    ASSERT_TRUE(waitFor(30));
    press("t minus 1 Return");
    ASSERT_TRUE(waitFor(29));
    press("Right");
    ASSERT_TRUE(waitFor(30));
}

TEST_F(Window, SaysWhatIsWrongWithATimecodeAndMovesNothing) {
    showFilm();
    std::vector<std::int64_t> wanted;
    auto const watching = editor.signalTargetChanged().connect([&] { wanted.push_back(editor.target()); });
    press("9 9 9 Return");
    auto const says = [this](std::string const& text) {
        return waitUntil([&] {
            auto const all = texts(find("Go to timecode"));
            return std::ranges::find(all, text) != all.end();
        });
    };
    EXPECT_TRUE(says("99 frames: there are 0 to 29"));
    press("9 0 0 Return");
    EXPECT_TRUE(says("the last frame is 00:00:03;29"));
    EXPECT_TRUE(isTyping());
    press("Escape");
    ASSERT_TRUE(waitUntil([this] { return !isTyping(); }));
    EXPECT_TRUE(wanted.empty());
    press("Right");
    ASSERT_TRUE(waitFor(1));
}

TEST_F(Window, LeavesATimecodeThatIsNotFinished) {
    showFilm();
    press("5");
    ASSERT_TRUE(waitUntil([this] { return isTyping(); }));
    clickTimeline(17, 120);
    ASSERT_TRUE(waitFor(17));
    EXPECT_FALSE(isTyping());
}

TEST_F(Window, MovesNothingWhileTheNumbersRun) {
    showFilm();
    auto const places = [this] {
        std::vector<int> all;
        for (auto const* const name : {"Timecode", "Frame", "Play", "Next frame", "Timeline", "Picture"}) {
            auto const [x, y] = place(find(name), 0, 0);
            all.insert(all.end(), {x, y, find(name).get_width(), find(name).get_height()});
        }
        return all;
    };
    auto const before = places();
    for (auto const frame : {1, 9, 10, 88, 99, 100, 111, 119}) {
        editor.seek(frame);
        ASSERT_TRUE(waitFor(frame));
        ASSERT_TRUE(waitUntil([drawn = pictures, this] { return pictures >= drawn; }));
        EXPECT_EQ(places(), before) << frame;
    }
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
    window.emplace(editor, WindowState{.size = {}, .panelWidth = {}, .recentFiles = {"/nowhere/gone.mp4"}});
    window->present();
    ASSERT_TRUE(waitUntil([this] { return window->is_active() && find("Timeline").get_width() > 100; }));
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
    window.emplace(editor, earlier);
    window->present();
    ASSERT_TRUE(waitUntil([this] { return window->is_active() && find("Timeline").get_width() > 100; }));
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

TEST_F(Window, MovesThePlayheadToAPinThatIsClicked) {
    showFilm();
    auto const seconds = 40 * 1001 / 30000.0;
    window->showPins({{.id = "a", .start = seconds, .text = "Logo too small", .author = "Ana", .colour = {}}},
                     true);
    ASSERT_TRUE(waitUntil([this] { return find("Comment, Ana: Logo too small").get_width() > 0; }));
    auto& pin = find("Comment, Ana: Logo too small");
    EXPECT_EQ(pin.get_tooltip_text(), "Ana: Logo too small");
    EXPECT_EQ(pin.get_width(), 12);
    // At the rim of the pin another frame lies below the pointer; that one is not wanted.
    std::vector<std::int64_t> wanted;
    auto const watching = editor.signalTargetChanged().connect([&] { wanted.push_back(editor.target()); });
    auto const [x, y] = place(pin, 1, pin.get_height() / 2.0);
    clickAt(x, y);
    ASSERT_TRUE(waitFor(40));
    EXPECT_EQ(wanted, (std::vector<std::int64_t>{40}));
    // The next press is the timeline's again.
    clickTimeline(5, 120);
    ASSERT_TRUE(waitFor(5));
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

TEST(Pins, AreDrawnInTheirColourUnlessTheyHaveNone) {
    EXPECT_EQ(pinColour({.id = {}, .text = {}, .author = {}, .colour = "#3366ff"}, true),
              Gdk::RGBA{"#3366ff"});
    auto const house = pinColour({.id = {}, .text = {}, .author = {}, .colour = {}}, true);
    EXPECT_EQ(pinColour({.id = {}, .text = {}, .author = {}, .colour = "url(x)"}, true), house);
    EXPECT_EQ(pinColour({.id = {}, .text = {}, .author = {}, .colour = "#xyz"}, true), house);
    EXPECT_NE(pinColour({.id = {}, .text = {}, .author = {}, .colour = "#3366ff"}, false),
              Gdk::RGBA{"#3366ff"});
}

TEST(Pins, SayWhoSaidWhat) {
    EXPECT_EQ(pinText({.id = {}, .text = "Too\ndark", .author = "Ben", .colour = {}}), "Ben: Too dark");
    EXPECT_EQ(pinText({.id = {}, .text = "Too dark", .author = {}, .colour = {}}), "Too dark");
    EXPECT_EQ(pinText({.id = {}, .text = std::string(300, 'x'), .author = {}, .colour = {}}),
              std::string(160, 'x') + "…");
}

} // namespace
} // namespace workbench
