#include "Contract/NativeViews.h"
#include "Contract/TurnUntil.h"
#include "Doubles/FakeHost.h"

#include <dlfcn.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace fcp::test {

namespace {

struct Editor {
    Journal journal;
    FakeHost host{journal};
};

Editor editor;

// What a host program does, with a window per panel.
class PanelModule : public testing::Test {
protected:
    using MakePanel = decltype(&fcpExtensionMakePanel);

    static void SetUpTestSuite() {
        g_setenv("GDK_DEBUG", "gl-glx", TRUE); // else EGL's driver is tried first, unloaded, and seen to leak
        g_log_set_always_fatal(
            static_cast<GLogLevelFlags>(G_LOG_FATAL_MASK | G_LOG_LEVEL_WARNING | G_LOG_LEVEL_CRITICAL));
        auto* const module = dlopen(PANEL_MODULE, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(module, nullptr) << dlerror();
        makePanel = reinterpret_cast<MakePanel>(dlsym(module, "fcpExtensionMakePanel"));
        ASSERT_NE(makePanel, nullptr) << dlerror();
        EXPECT_EQ(makePanel(), nullptr); // before GTK there is nothing to make it of
        gtk_init();
    }

    void SetUp() override {
        editor.host.current = std::make_shared<FakeTimeline>(editor.journal);
        (void)editor.journal.take();
    }

    static GtkWidget* show(GtkWidget* panel) {
        auto* const window = gtk_window_new();
        gtk_window_set_child(GTK_WINDOW(window), panel);
        gtk_window_present(GTK_WINDOW(window));
        EXPECT_TRUE(
            turnUntil([&] { return gtk_widget_get_mapped(panel) && gtk_widget_get_width(panel) > 0; }));
        return window;
    }

    static FakeTimeline const& timeline() { return *editor.host.current; }

    inline static MakePanel makePanel = nullptr;
    WidgetWatch widgets;
};

} // namespace

TEST_F(PanelModule, ShowsItsEntryAndNothingElse) {
    std::unique_ptr<FILE, int (*)(FILE*)> const symbols(popen("nm -D --defined-only " PANEL_MODULE, "r"),
                                                        pclose);
    std::array<char, 256> line{};
    std::vector<std::string> names;
    while (std::fgets(line.data(), line.size(), symbols.get())) {
        std::string const text = line.data();
        names.push_back(text.substr(text.find_last_of(' ') + 1));
    }
    EXPECT_EQ(names, std::vector<std::string>{"fcpExtensionMakePanel\n"});
}

TEST_F(PanelModule, ReturnsAFloatingWidgetThatHasItsPanelsSizeInTheHostsWindow) {
    auto* const panel = makePanel();
    ASSERT_TRUE(GTK_IS_WIDGET(panel));
    EXPECT_TRUE(g_object_is_floating(panel));
    auto* const window = show(panel);
    EXPECT_EQ(gtk_widget_get_width(panel), 400);
    EXPECT_EQ(gtk_widget_get_height(panel), 700);
    widgets.watch(panel);
    gtk_window_destroy(GTK_WINDOW(window));
}

TEST_F(PanelModule, FindsTheHostByNameAndObservesItsTimelineAsLongAsThePanelLives) {
    auto* const window = show(makePanel());
    EXPECT_EQ(timeline().added.size(), 2U); // one of them for the handler that is thrown away
    EXPECT_EQ(timeline().observers.size(), 1U);
    gtk_window_destroy(GTK_WINDOW(window));
    EXPECT_TRUE(turnUntil([] { return timeline().observers.empty(); }));
}

TEST_F(PanelModule, RunsWithoutATimeline) {
    editor.host.current = nullptr;
    auto* const window = show(makePanel());
    gtk_window_destroy(GTK_WINDOW(window));
}

TEST_F(PanelModule, MakesPanelsThatGoOneByOne) {
    auto* const first = makePanel();
    auto* const second = makePanel();
    auto* const firstWindow = show(first);
    auto* const secondWindow = show(second);
    EXPECT_EQ(timeline().observers.size(), 2U);
    widgets.watch(first);
    gtk_window_destroy(GTK_WINDOW(firstWindow));
    EXPECT_TRUE(turnUntil([] { return timeline().observers.size() == 1; }));
    EXPECT_TRUE(gtk_widget_get_mapped(second));
    widgets.watch(second);
    gtk_window_destroy(GTK_WINDOW(secondWindow));
}

TEST_F(PanelModule, GoesWithAWidgetThatWasNeverShown) {
    auto* const panel = makePanel();
    widgets.watch(panel);
    g_object_ref_sink(panel);
    g_object_unref(panel);
    EXPECT_TRUE(turnUntil([] { return timeline().observers.empty(); }));
}

TEST_F(PanelModule, AWidgetThatIsDestroyedTwiceLosesItsPanelOnce) {
    auto const panel = GRef<GtkWidget>::retain(makePanel());
    widgets.watch(panel.get());
    g_object_run_dispose(G_OBJECT(panel.get()));
    EXPECT_EQ(gtk_widget_get_first_child(panel.get()), nullptr);
    EXPECT_TRUE(turnUntil([] { return timeline().observers.empty(); }));
    g_object_run_dispose(G_OBJECT(panel.get()));
}

} // namespace fcp::test

fcp::FCPXHost* ProExtensionHostSingleton() {
    return &fcp::test::editor.host;
}
