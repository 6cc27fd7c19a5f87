// host MODULE: shows the panel beside a sequence of one minute, whose playhead only the panel moves.
#include <FcpExtension/ProExtensionHost.h>

#include <dlfcn.h>
#include <gtk/gtk.h>

#include <iostream>
#include <set>

using fcp::CMTime;
using Observer = std::shared_ptr<fcp::FCPXTimelineObserver>;

struct Sequence final : fcp::FCPXSequence {
    std::optional<std::string> name() const override { return "Example"; }

    CMTime duration() const override { return {60, 1, CMTime::Valid, 0}; }

    CMTime frameDuration() const override { return {1001, 30000, CMTime::Valid, 0}; }

    CMTime start() const override { return {0, 1, CMTime::Valid, 0}; }
};

struct Timeline final : fcp::FCPXTimeline {
    CMTime playheadTime() const override { return playhead; }

    void movePlayheadTo(CMTime time) override {
        if ((time.flags & ~CMTime::HasBeenRounded) != CMTime::Valid)
            return; // no number of seconds, or an infinite one
        playhead = time;
        std::cout << "playhead at " << time.value << "/" << time.timescale << std::endl;
        for (auto const& observer : std::set(observers)) // a copy: a page may close the panel
            observer->playheadTimeChanged();
    }

    std::shared_ptr<fcp::FCPXSequence> activeSequence() const override {
        return std::make_shared<Sequence>();
    }

    void add(Observer observer) override { observers.insert(observer); }

    void remove(Observer observer) override { observers.erase(observer); }

    CMTime playhead{0, 600, CMTime::Valid, 0};
    std::set<Observer> observers;
};

struct Host final : fcp::FCPXHost {
    std::shared_ptr<fcp::FCPXTimeline> timeline() const override { return shown; }

    std::shared_ptr<Timeline> shown = std::make_shared<Timeline>();
};

static Host host;

fcp::FCPXHost* ProExtensionHostSingleton() {
    return &host;
}

int main(int argc, char** argv) {
    gtk_init();
    auto* const module = dlopen(argc > 1 ? argv[1] : "libfcp-extension.so", RTLD_NOW | RTLD_LOCAL);
    auto* const entry = module ? dlsym(module, "fcpExtensionMakePanel") : nullptr;
    if (!entry)
        return std::cerr << dlerror() << std::endl, 1;
    auto* const panel = reinterpret_cast<decltype(&fcpExtensionMakePanel)>(entry)();
    auto* const window = gtk_window_new();
    gtk_window_set_child(GTK_WINDOW(window), panel);
    gtk_window_present(GTK_WINDOW(window));
    std::cout << "panel realized: " << gtk_widget_get_realized(panel)
              << ", observers: " << host.shown->observers.size() << std::endl;
    while (g_list_model_get_n_items(gtk_window_get_toplevels()) > 0)
        g_main_context_iteration(nullptr, TRUE);
}
