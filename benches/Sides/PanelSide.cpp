// Ours: the panel in a window of a program that is its host.

#include "benches/Sides/BenchHost.h"
#include "benches/Sides/BenchPanel.h"
#include "benches/Sides/SideOptions.h"

namespace {

using namespace fcp::bench;

BenchHost* host = nullptr;

// Pending for longer than any measuring, as requests are that nobody answers.
void keepPending(fcp::MainLoop& loop, int timeouts) {
    for (int i = 0; i < timeouts; ++i)
        loop.after(fcp::Seconds(3600), [id = "req-" + std::to_string(i) + "-5C08E1"] {});
}

} // namespace

extern "C" fcp::FCPXHost* ProExtensionHostSingleton() {
    return host;
}

int main(int argc, char** argv) {
    auto const options = readSideOptions(argc, argv);
    endWithParent();
    gtk_init();
    BenchHost theHost(options.burst, options.burstThread);
    host = &theHost;
    auto* const window = GTK_WINDOW(gtk_window_new());
    auto* const root = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_window_set_default_size(window, 400, 700);
    gtk_window_set_child(window, root);
    BenchPanel panel(root, options);
    keepPending(panel.mainLoop(), options.timeouts);
    gtk_window_present(window);
    auto* const loop = g_main_loop_new(nullptr, FALSE);
    g_main_loop_run(loop);
}
