#pragma once

#include "Platform/Gtk/SdBusPointers.h"

#include <cstddef>
#include <deque>

namespace fcp {

// What waits for a bus that does not read. sd-bus has a queue of its own, but empties it in one go, blocking
// for seconds when it is long; so it is given one message at a time. Main thread only.
class SdBusOutbox {
public:
    // Writes the message to the socket, as far as that takes it at once; never blocks. Behind a bus that has
    // not read for long the message is dropped: 64 MiB are kept at most. `size` is the body's.
    void post(sd_bus& bus, SdBusMessagePointer message, std::size_t size);

    // Writes one of the waiting messages; false when none waits or the socket is full.
    bool sendNext(sd_bus& bus);

    void clear();

private:
    struct Entry {
        SdBusMessagePointer message;
        std::size_t size;
    };

    std::deque<Entry> waiting;
    std::size_t waitingSize = 0;
};

} // namespace fcp
