#pragma once

#include "Platform/Gtk/SdBusPointers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace fcp::test {

// A program on the bus that shares nothing with ours but libsystemd: it blocks, and needs no main loop.
class BareBusClient {
public:
    explicit BareBusClient(std::string const& address) {
        sd_bus* opened = nullptr;
        EXPECT_GE(sd_bus_new(&opened), 0);
        bus.reset(opened);
        EXPECT_GE(sd_bus_set_address(opened, address.c_str()), 0);
        EXPECT_GE(sd_bus_set_bus_client(opened, 1), 0);
        EXPECT_GE(sd_bus_start(opened), 0);
        EXPECT_GE(sd_bus_get_unique_name(opened, &unique), 0); // waits for the bus
    }

    [[nodiscard]] std::string uniqueName() const { return unique; }

    // With a signature and values as for sd_bus_message_append.
    template <typename... Values>
    void emit(std::string const& member, char const* signature, Values... values) const {
        EXPECT_GE(sd_bus_emit_signal(bus.get(), "/com/zelvix/fcp", "com.zelvix.fcp", member.c_str(),
                                     signature, values...),
                  0);
        EXPECT_GE(sd_bus_flush(bus.get()), 0);
    }

    void send(SdBusMessagePointer const& message, char const* destination = nullptr) const {
        EXPECT_GE(sd_bus_send_to(bus.get(), message.get(), destination, nullptr), 0);
        EXPECT_GE(sd_bus_flush(bus.get()), 0);
    }

    [[nodiscard]] SdBusMessagePointer makeSignal(char const* path, char const* interface,
                                                 char const* member) const {
        sd_bus_message* signal = nullptr;
        EXPECT_GE(sd_bus_message_new_signal(bus.get(), &signal, path, interface, member), 0);
        return SdBusMessagePointer(signal);
    }

    // Takes part in the signals of the container channel from here on.
    void listen() const {
        auto const* const match = "type='signal',interface='com.zelvix.fcp'";
        EXPECT_GE(sd_bus_add_match(bus.get(), nullptr, match, nullptr, nullptr), 0);
    }

    // The next signal of the container channel; null after 20 s without one.
    [[nodiscard]] SdBusMessagePointer receive() const {
        constexpr std::uint64_t patience = 20'000'000; // microseconds
        for (;;) {
            sd_bus_message* arrived = nullptr;
            int const processed = sd_bus_process(bus.get(), &arrived);
            SdBusMessagePointer message(arrived);
            if (arrived && sd_bus_message_is_signal(arrived, "com.zelvix.fcp", nullptr) > 0)
                return message;
            if (processed < 0 || (processed == 0 && sd_bus_wait(bus.get(), patience) <= 0))
                return nullptr;
        }
    }

private:
    SdBusPointer bus;
    char const* unique = nullptr;
};

} // namespace fcp::test
