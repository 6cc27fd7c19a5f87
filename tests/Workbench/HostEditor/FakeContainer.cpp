// Stands in for the container application: owns its bus name until it is ended. FAKE_CONTAINER_MANNER says
// how it behaves: "stays", "leaves" (ends at once), "stubborn" (does not end when it is asked to), "is
// closed" (ends well, unless it has no window). Notes each
// start as a line in the file that FAKE_CONTAINER_LOG names.

#include <gio/gio.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

void noteStart(char const* argument) {
    auto* const log = std::fopen(std::getenv("FAKE_CONTAINER_LOG"), "a");
    if (!log)
        return;
    std::fprintf(log, "started %s\n", argument ? argument : "");
    std::fclose(log);
}

} // namespace

int main(int, char** arguments) {
    auto const* const manner = std::getenv("FAKE_CONTAINER_MANNER");
    noteStart(arguments[1]);
    if (manner && !std::strcmp(manner, "leaves"))
        return 3;
    if (manner && !std::strcmp(manner, "is closed") && !arguments[1])
        return 0;
    if (manner && !std::strcmp(manner, "stubborn"))
        std::signal(SIGTERM, SIG_IGN);
    // The shared connection: when the bus goes, the process goes with it.
    g_bus_own_name(G_BUS_TYPE_SESSION, "com.zelvix.fcp.Container", G_BUS_NAME_OWNER_FLAGS_NONE, nullptr,
                   nullptr, nullptr, nullptr, nullptr);
    g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}
