#pragma once

#include <gtk/gtk.h>

#include <memory>

namespace fcp {

// Where the children of a widget go. Every widget of the panel is content with no room at all, so that the
// panel can be made smaller than what is in it.
class Layout {
public:
    virtual ~Layout() = default;
    Layout() = default;
    Layout(Layout const&) = delete;
    Layout& operator=(Layout const&) = delete;

    // What the widget would like to have, in pixels.
    [[nodiscard]] virtual int naturalSize(GtkOrientation) const { return 0; }

    virtual void allocate(GtkWidget* widget, int width, int height) = 0;

    // The widget owns the layout from here on.
    static void install(GtkWidget* widget, std::unique_ptr<Layout> layout);
};

} // namespace fcp
