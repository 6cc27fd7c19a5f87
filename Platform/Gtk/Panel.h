#pragma once

#include "Platform/Gtk/GtkUserInterface.h"

#include <gtk/gtk.h>

#include <memory>

namespace fcp {

class PanelAdapters;
class ViewController;

// One panel in a host's window: its native views and its view controller. It belongs to its root widget and
// goes when that is destroyed. Main thread only.
class Panel {
public:
    // Builds a panel, starts its first load, and returns the root widget with a floating reference.
    [[nodiscard]] static GtkWidget* make(PanelAdapters& adapters);

    ~Panel();

    Panel(Panel const&) = delete;
    Panel& operator=(Panel const&) = delete;

private:
    Panel(GtkWidget* root, PanelAdapters& adapters);

    GtkUserInterface userInterface;
    std::shared_ptr<ViewController> const viewController;
};

} // namespace fcp
