// What the panel brings into its host's process, beside what its window and its web view need anyway.

#include "benches/Sides/BenchPanel.h"
#include "benches/Sides/SideOptions.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <fstream>
#include <memory>
#include <string>

namespace fcp::bench {
namespace {

using SocketListener = std::unique_ptr<GSocketListener, decltype(&g_object_unref)>;

bool isMapped(std::string const& library) {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find("/" + library) != std::string::npos)
            return true;
    return false;
}

// Takes connections and never answers, so that the panel goes on loading.
class SilentServer {
public:
    SilentServer()
        : listener(g_socket_listener_new(), g_object_unref)
        , port(g_socket_listener_add_any_inet_port(listener.get(), nullptr, nullptr)) {}

    [[nodiscard]] std::string url() const { return "http://localhost:" + std::to_string(port) + "/"; }

private:
    SocketListener listener;
    int port;
};

// Each turn of the spinner is a frame.
void waitForFrames(GtkWidget* widget, int frames) {
    auto* const clock = gtk_widget_get_frame_clock(widget);
    auto const wanted = gdk_frame_clock_get_frame_counter(clock) + frames;
    auto const end = g_get_monotonic_time() + 20 * G_TIME_SPAN_SECOND;
    while (gdk_frame_clock_get_frame_counter(clock) < wanted && g_get_monotonic_time() < end)
        g_main_context_iteration(nullptr, TRUE);
    EXPECT_GE(gdk_frame_clock_get_frame_counter(clock), wanted);
}

GtkWidget* findSpinner(GtkWidget* widget) {
    if (GTK_IS_SPINNER(widget))
        return widget;
    GtkWidget* found = nullptr;
    for (auto* child = gtk_widget_get_first_child(widget); child && !found;
         child = gtk_widget_get_next_sibling(child))
        found = findSpinner(child);
    return found;
}

TEST(PanelWeight, TheLoadingOverlayIsDrawnWithoutAFurtherPictureOrWidgetLibrary) {
    gtk_init();
    SilentServer const server;
    auto* const window = gtk_window_new();
    auto* const root = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_window_set_child(GTK_WINDOW(window), root);
    {
        SideOptions options;
        options.url = server.url();
        BenchPanel const panel(root, options);
        gtk_window_present(GTK_WINDOW(window));
        waitForFrames(window, 60);
        auto* const spinner = findSpinner(root);
        ASSERT_NE(spinner, nullptr);
        ASSERT_TRUE(gtk_widget_get_mapped(spinner));
        ASSERT_EQ(gtk_widget_get_width(spinner), 16);
        EXPECT_TRUE(isMapped("libwebkitgtk-6.0.so"));
        EXPECT_FALSE(isMapped("librsvg-2.so"));
        EXPECT_FALSE(isMapped("libgtkmm-4.0.so"));
    }
    gtk_window_destroy(GTK_WINDOW(window));
}

} // namespace
} // namespace fcp::bench
