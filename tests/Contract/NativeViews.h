#pragma once

#include "FcpExtension/OverlayViews.h"
#include "Platform/Gtk/GRef.h"
#include "Platform/Gtk/GtkUserInterface.h"
#include "Platform/Gtk/GtkView.h"
#include "Platform/Gtk/Stylesheet.h"

#include <gtest/gtest.h>

#include <iosfwd>
#include <memory>
#include <string>

namespace fcp::test {

inline constexpr auto longMessage =
    "The workspace took too long to respond. Check your connection and retry. A very long message follows "
    "here, so that the label has to wrap by words on to several lines and, in the end, is cut after the "
    "third one, because only three are admitted, whatever the text says.";

// In pixels, from the superview's top-left corner.
struct Place {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(Place const&) const = default;
};

std::ostream& operator<<(std::ostream& out, Place const& place);

[[nodiscard]] GtkWidget* widgetOf(std::shared_ptr<View> const& view);
[[nodiscard]] Place placeOf(GtkWidget* widget);
[[nodiscard]] Place placeOf(std::shared_ptr<View> const& view);

// A spinner keeps its middle while it turns.
[[nodiscard]] Place placeOfTurning(std::shared_ptr<View> const& view);

[[nodiscard]] GtkLabel* labelOf(std::shared_ptr<View> const& view);

// Expects of every widget of a tree that it is gone in the end.
class WidgetWatch {
public:
    void watch(GtkWidget* widget);
    ~WidgetWatch();

private:
    int alive = 0;
};

// The panel's own views, over a white one where the page is, in a window that a test shows.
class NativeViews : public testing::Test {
protected:
    static void SetUpTestSuite();
    NativeViews();
    void TearDown() override;

    void showError() const;

    // Shows the window in the size that the panel is made for, or in another one.
    void present() const { present(400, 700); }

    void present(int width, int height) const;

    WidgetWatch widgets; // goes last
    GtkWidget* const window = gtk_window_new();
    GRef<GtkWidget> const ownedRoot = GRef<GtkWidget>::retain(gtk_box_new(GTK_ORIENTATION_VERTICAL, 0));
    GtkWidget* const root = ownedRoot.get();
    int pressed = 0; // how often the button was
    Stylesheet styles{gdk_display_get_default()};
    GtkUserInterface userInterface{root, styles};
    Rect const bounds{0, 0, 400, 700};
    std::shared_ptr<View> container = userInterface.makeView(containerView());
    std::shared_ptr<View> loadingOverlay = userInterface.makeView(loadingOverlayView(bounds));
    std::shared_ptr<View> spinner = userInterface.makeView(loadingSpinner());
    std::shared_ptr<View> status = userInterface.makeView(loadingStatusLabel(bounds));
    std::shared_ptr<View> errorOverlay = userInterface.makeView(errorOverlayView(bounds));
    std::shared_ptr<View> bar = userInterface.makeView(accentBar(bounds));
    std::shared_ptr<View> offline = userInterface.makeView(offlineLabel(bounds));
    std::shared_ptr<View> paused = userInterface.makeView(connectionPausedLabel(bounds));
    std::shared_ptr<View> detail = userInterface.makeView(errorDetailText(bounds));
    std::shared_ptr<View> retry = userInterface.makeView(retryConnectionButton([this] { ++pressed; }));
};

} // namespace fcp::test
