#pragma once

#include "Workbench/ContainerApp/BusClient.h"
#include "Workbench/ContainerApp/HostSequence.h"

#include <optional>
#include <systemd/sd-bus.h>

namespace workbench {

// An editor on the session bus, as the container sees one. Lives on a connection of its own, which is served
// while it waits.
class EditorDouble {
public:
    // Takes the editor's name at once.
    explicit EditorDouble(std::optional<HostSequence> sequence);

    // Tells the bus.
    enum class News { WithValue, WithoutValue };
    void setSequence(std::optional<HostSequence> theSequence, News news);

    // Serves questions until `condition` holds; false when it does not within 20 seconds.
    [[nodiscard]] bool waitFor(std::function<bool()> const& condition);

    // How often it has been asked for the sequence.
    [[nodiscard]] int questions() const { return asked; }

private:
    static int get(sd_bus* bus, char const* path, char const* interface, char const* property,
                   sd_bus_message* reply, void* self, sd_bus_error* error);

    std::optional<HostSequence> sequence;
    int asked = 0;
    std::unique_ptr<Bus> bus;
    BusSlot object;
};

} // namespace workbench
