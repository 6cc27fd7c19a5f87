// What answers on the bus, for ours and for the floor alike: a bare responder that says true to every
// command. It prints "ready" when it listens.

#include "benches/Sides/BusSupport.h"
#include "benches/Sides/SideOptions.h"

#include <systemd/sd-bus.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

using namespace fcp::bench;

// Reads on behind the identifier too: a real one looks at everything.
char const* readRequestId(sd_bus_message* command) {
    char const* requestId = "";
    insist(sd_bus_message_enter_container(command, 'a', "{sv}"), "command");
    while (sd_bus_message_enter_container(command, 'e', "sv") > 0) {
        char const* key = nullptr;
        insist(sd_bus_message_read_basic(command, 's', &key), "key");
        if (std::strcmp(key, "requestId") == 0)
            insist(sd_bus_message_read(command, "v", "s", &requestId), "requestId");
        else
            insist(sd_bus_message_skip(command, "v"), "value");
        insist(sd_bus_message_exit_container(command), "entry");
    }
    return requestId;
}

int answer(sd_bus_message* command, void*, sd_bus_error*) {
    auto* const bus = sd_bus_message_get_bus(command);
    return sd_bus_emit_signal(bus, busPath, sd_bus_message_get_interface(command), responseMember, "a{sv}", 2,
                              "requestId", "s", readRequestId(command), "result", "b", 1);
}

} // namespace

int main() {
    endWithParent();
    sd_bus* bus = nullptr;
    insist(sd_bus_open_user(&bus), "session bus");
    for (char const* const interface : {panelInterface, floorInterface})
        insist(sd_bus_match_signal(bus, nullptr, nullptr, busPath, interface, commandMember, answer, nullptr),
               interface);
    std::printf("ready\n");
    std::fflush(stdout);
    for (;;) {
        int const result = sd_bus_process(bus, nullptr);
        insist(result, "bus");
        if (result == 0)
            insist(sd_bus_wait(bus, UINT64_MAX), "bus");
    }
}
