#pragma once

#include <systemd/sd-bus.h>

#include <memory>

namespace fcp {

struct SdBusDeleter {
    // Closes without a flush, which would wait for as long as the bus is stalled.
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }

    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};

using SdBusPointer = std::unique_ptr<sd_bus, SdBusDeleter>;
using SdBusMessagePointer = std::unique_ptr<sd_bus_message, SdBusDeleter>;

} // namespace fcp
