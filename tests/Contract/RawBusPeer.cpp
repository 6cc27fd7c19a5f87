#include "Contract/RawBusPeer.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

namespace fcp::test {

RawBusPeer::RawBusPeer() {
    int ends[2] = {-1, -1};
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends), 0);
    sd_bus* opened = nullptr;
    EXPECT_GE(sd_bus_new(&opened), 0);
    bus.reset(opened);
    EXPECT_GE(sd_bus_set_fd(opened, ends[0], ends[0]), 0);
    EXPECT_GE(sd_bus_start(opened), 0);
    farEnd = ends[1];
    greet();
}

RawBusPeer::~RawBusPeer() {
    close(farEnd);
}

SdBusMessagePointer RawBusPeer::makeSignal() const {
    sd_bus_message* message = nullptr;
    EXPECT_GE(sd_bus_message_new_signal(bus.get(), &message, "/com/zelvix/fcp", "com.zelvix.fcp", "test"), 0);
    return SdBusMessagePointer(message);
}

void RawBusPeer::seal(sd_bus_message& message) {
    EXPECT_GE(sd_bus_message_seal(&message, 1, 0), 0);
}

bool RawBusPeer::receive(std::string const& bytes, std::function<void(sd_bus_message&)> const& reader) {
    std::size_t written = 0;
    for (;;) {
        if (written < bytes.size()) {
            auto const taken = write(farEnd, bytes.data() + written, bytes.size() - written);
            EXPECT_TRUE(taken > 0 || errno == EAGAIN);
            written += taken > 0 ? static_cast<std::size_t>(taken) : 0;
        }
        sd_bus_message* arrived = nullptr;
        if (sd_bus_process(bus.get(), &arrived) < 0)
            return false;
        SdBusMessagePointer const message(arrived);
        std::uint8_t type = 0;
        if (message && sd_bus_message_get_type(arrived, &type) >= 0 && type == SD_BUS_MESSAGE_SIGNAL) {
            reader(*arrived);
            return true;
        }
    }
}

// The far end's half of the handshake, word for word.
void RawBusPeer::greet() {
    std::string const words = "DATA\r\nOK 0123456789abcdef0123456789abcdef\r\nAGREE_UNIX_FD\r\n";
    EXPECT_EQ(write(farEnd, words.data(), words.size()), static_cast<ssize_t>(words.size()));
    while (sd_bus_is_ready(bus.get()) <= 0)
        ASSERT_GE(sd_bus_process(bus.get(), nullptr), 0);
}

} // namespace fcp::test
