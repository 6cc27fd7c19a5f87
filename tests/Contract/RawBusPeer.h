#pragma once

#include "Platform/Gtk/SdBusPointers.h"

#include <functional>
#include <string>

namespace fcp::test {

// A connection without a bus: whoever is at the other end of its socket is this test, byte by byte. Also good
// for making messages that are never sent.
class RawBusPeer {
public:
    RawBusPeer();
    ~RawBusPeer();

    RawBusPeer(RawBusPeer const&) = delete;
    RawBusPeer& operator=(RawBusPeer const&) = delete;

    [[nodiscard]] SdBusMessagePointer makeSignal() const;

    // Finishes a message, as sending it would, so that it can be read from its start.
    static void seal(sd_bus_message& message);

    // Makes the bytes of one whole message arrive and passes it to `reader`; false when sd-bus itself
    // refuses them.
    [[nodiscard]] bool receive(std::string const& bytes, std::function<void(sd_bus_message&)> const& reader);

private:
    void greet();

    SdBusPointer bus;
    int farEnd = -1;
};

} // namespace fcp::test
