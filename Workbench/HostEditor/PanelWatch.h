#pragma once

#include <gtkmm/widget.h>
#include <sigc++/sigc++.h>

namespace workbench {

// Sees from outside whether the panel's page has loaded and has called the bridge: it looks for the web view
// inside the panel and listens to what that tells everybody. Main thread. The panel outlives the watch, or
// goes with its web view.
class PanelWatch final {
public:
    PanelWatch() = default;
    ~PanelWatch();
    PanelWatch(PanelWatch const&) = delete;
    PanelWatch& operator=(PanelWatch const&) = delete;

    void follow(GtkWidget* panel); // without a web view inside nothing is ever heard

    [[nodiscard]] bool pageSpeaks() const { return speaks; }

    sigc::signal<void()>& signalChanged() { return changed; }

private:
    void leave();
    void setSpeaks(bool pageDoes);

    GObject* view = nullptr; // both are watched weakly
    GObject* messages = nullptr;
    bool speaks = false;
    sigc::signal<void()> changed;
};

} // namespace workbench
