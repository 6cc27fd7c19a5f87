// Stands in for the panel's module: a label in the panel's place, and a line on standard output for
// everything that it hears from its host. FAKE_PANEL_SEEK ("VALUE/TIMESCALE") makes it move the playhead
// once, FAKE_PANEL_CLOSE makes it close the window.

#include "FcpExtension/ProExtensionHost.h"

#include <dlfcn.h>
#include <gtk/gtk.h>

#include <cstdio>
#include <cstdlib>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

fcp::FCPXHost* host() {
    auto* const symbol = dlsym(RTLD_DEFAULT, "ProExtensionHostSingleton");
    return symbol ? reinterpret_cast<decltype(&ProExtensionHostSingleton)>(symbol)() : nullptr;
}

char const* thread() {
    return syscall(SYS_gettid) == getpid() ? "main" : "other";
}

void tellSequence(char const* event) {
    auto const sequence = host()->timeline()->activeSequence();
    if (!sequence) {
        std::printf("panel: %s none on the %s thread\n", event, thread());
    } else {
        auto const duration = sequence->duration();
        std::printf("panel: %s %s of %lld/%d on the %s thread\n", event,
                    sequence->name().value_or("").c_str(), static_cast<long long>(duration.value),
                    duration.timescale, thread());
    }
    std::fflush(stdout);
}

class Observer final : public fcp::FCPXTimelineObserver {
public:
    void playheadTimeChanged() override {
        auto const time = host()->timeline()->playheadTime();
        std::printf("panel: playhead %lld/%d on the %s thread\n", static_cast<long long>(time.value),
                    time.timescale, thread());
        std::fflush(stdout);
    }

    void activeSequenceChanged() override { tellSequence("sequence"); }
};

gboolean closeWindow(gpointer widget) {
    gtk_window_close(GTK_WINDOW(gtk_widget_get_root(GTK_WIDGET(widget))));
    return G_SOURCE_REMOVE;
}

void seekAsTold(char const* wish) {
    long long value = 0;
    int timescale = 0;
    if (wish && std::sscanf(wish, "%lld/%d", &value, &timescale) == 2)
        host()->timeline()->movePlayheadTo(
            {.value = value, .timescale = timescale, .flags = fcp::CMTime::Valid});
}

} // namespace

GtkWidget* fcpExtensionMakePanel() {
    auto* const label = gtk_label_new("A panel for tests");
    if (!host()) {
        std::puts("panel: no host");
        return label;
    }
    tellSequence("begins with");
    host()->timeline()->add(std::make_shared<Observer>());
    seekAsTold(std::getenv("FAKE_PANEL_SEEK"));
    if (std::getenv("FAKE_PANEL_CLOSE"))
        g_timeout_add(500, closeWindow, label);
    return label;
}
