// Stands in for the container application: owns its bus name until it is ended. FAKE_CONTAINER_MANNER says
// how it behaves: "stays", "leaves" (ends at once), "stubborn" (does not end when it is asked to). Notes each
// start as a line in the file that FAKE_CONTAINER_LOG names.

#include <gio/gio.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

void noteStart() {
    auto* const log = std::fopen(std::getenv("FAKE_CONTAINER_LOG"), "a");
    if (!log)
        return;
    std::fputs("started\n", log);
    std::fclose(log);
}

} // namespace

int main() {
    auto const* const manner = std::getenv("FAKE_CONTAINER_MANNER");
    noteStart();
    if (manner && !std::strcmp(manner, "leaves"))
        return 3;
    if (manner && !std::strcmp(manner, "stubborn"))
        std::signal(SIGTERM, SIG_IGN);
    // The shared connection: when the bus goes, the process goes with it.
    g_bus_own_name(G_BUS_TYPE_SESSION, "com.zelvix.fcp.Container", G_BUS_NAME_OWNER_FLAGS_NONE, nullptr,
                   nullptr, nullptr, nullptr, nullptr);
    g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}
