#include "Contract/NativeViews.h"

#include "Contract/TurnUntil.h"

#include <cmath>
#include <ostream>

namespace fcp::test {

std::ostream& operator<<(std::ostream& out, Place const& place) {
    return out << "{" << place.x << ", " << place.y << ", " << place.width << ", " << place.height << "}";
}

GtkWidget* widgetOf(std::shared_ptr<View> const& view) {
    return std::static_pointer_cast<GtkView>(view)->widget();
}

Place placeOf(GtkWidget* widget) {
    GtkAllocation allocation;
    gtk_widget_get_allocation(widget, &allocation);
    return {allocation.x, allocation.y, allocation.width, allocation.height};
}

Place placeOf(std::shared_ptr<View> const& view) {
    return placeOf(widgetOf(view));
}

Place placeOfTurning(std::shared_ptr<View> const& view) {
    auto* const widget = widgetOf(view);
    auto place = placeOf(widget);
    graphene_point_t const middle{static_cast<float>(place.width) / 2, static_cast<float>(place.height) / 2};
    graphene_point_t there;
    EXPECT_TRUE(gtk_widget_compute_point(widget, gtk_widget_get_parent(widget), &middle, &there));
    place.x = static_cast<int>(std::lround(there.x - middle.x));
    place.y = static_cast<int>(std::lround(there.y - middle.y));
    return place;
}

GtkLabel* labelOf(std::shared_ptr<View> const& view) {
    return GTK_LABEL(gtk_widget_get_first_child(widgetOf(view)));
}

void WidgetWatch::watch(GtkWidget* widget) {
    ++alive;
    g_object_weak_ref(
        G_OBJECT(widget), [](gpointer count, GObject*) { --*static_cast<int*>(count); }, &alive);
    for (auto* child = gtk_widget_get_first_child(widget); child; child = gtk_widget_get_next_sibling(child))
        watch(child);
}

WidgetWatch::~WidgetWatch() {
    EXPECT_TRUE(turnUntil([this] { return alive == 0; })) << alive << " widgets are still alive";
}

void NativeViews::SetUpTestSuite() {
    g_setenv("GTK_A11Y", "test", TRUE); // keeps the accessible properties for a test to ask for
    g_setenv("GDK_DEBUG", "gl-glx", TRUE); // else EGL's driver is tried first, unloaded, and seen to leak
    g_log_set_always_fatal(
        static_cast<GLogLevelFlags>(G_LOG_FATAL_MASK | G_LOG_LEVEL_WARNING | G_LOG_LEVEL_CRITICAL));
    gtk_init();
}

NativeViews::NativeViews() {
    gtk_window_set_decorated(GTK_WINDOW(window), FALSE);
    gtk_window_set_child(GTK_WINDOW(window), root);
    userInterface.installView(container);
    auto page = containerView();
    page.layerBackground = Color{1, 1, 1, 1};
    container->addSubview(userInterface.makeView(page));
    for (auto const& view : {spinner, status})
        loadingOverlay->addSubview(view);
    container->addSubview(loadingOverlay);
    for (auto const& view : {bar, offline, paused, detail, retry})
        errorOverlay->addSubview(view);
    container->addSubview(errorOverlay);
}

void NativeViews::TearDown() {
    widgets.watch(root);
    gtk_window_destroy(GTK_WINDOW(window));
}

void NativeViews::showError() const {
    loadingOverlay->hide();
    errorOverlay->show();
}

void NativeViews::present(int width, int height) const {
    gtk_window_set_default_size(GTK_WINDOW(window), width, height);
    gtk_window_present(GTK_WINDOW(window));
    ASSERT_TRUE(turnUntil([&] {
        return gtk_widget_get_width(root) == width && gtk_widget_get_height(root) == height &&
               gtk_widget_get_mapped(widgetOf(container));
    }));
}

} // namespace fcp::test
