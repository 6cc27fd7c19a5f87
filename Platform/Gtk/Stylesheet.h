#pragma once

#include "Platform/Gtk/GRef.h"

#include <gtk/gtk.h>

#include <map>
#include <string>

namespace fcp {

// The looks of the panel's native views on one display, shared by all panels: a fixed sheet for what the
// descriptions leave to the platform, and a class for each distinct set of declarations. Main thread only;
// lives as long as the widgets that wear its classes.
class Stylesheet {
public:
    explicit Stylesheet(GdkDisplay* shownOn);
    ~Stylesheet();

    Stylesheet(Stylesheet const&) = delete;
    Stylesheet& operator=(Stylesheet const&) = delete;

    // Gives `widget` what the fixed sheet says of `kind`: "label", "spinner" or "button".
    static void addKind(GtkWidget* widget, char const* kind);

    // Gives `declarations` to `widget` alone, not to its children.
    void addLook(GtkWidget* widget, std::string const& declarations);

private:
    void load() const;

    GRef<GdkDisplay> const display;
    GRef<GtkCssProvider> const provider;
    std::map<std::string, std::string> classes; // by declarations
};

} // namespace fcp
