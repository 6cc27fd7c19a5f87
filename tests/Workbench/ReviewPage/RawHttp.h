#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace workbench {

// A client that sends bytes as they are and reads what comes, for a server that lives on this very thread.
// One connection; the main context runs while it waits.
class RawHttp final {
public:
    enum class Family { IPv4, IPv6 };

    explicit RawHttp(std::uint16_t port, Family family = Family::IPv4);
    ~RawHttp();
    RawHttp(RawHttp const&) = delete;
    RawHttp& operator=(RawHttp const&) = delete;

    [[nodiscard]] bool isConnected() const { return connected; }

    void send(std::string const& bytes);

    // Everything until the server closes the connection, or until the deadline of 10 s, when it ends in
    // "(still open)".
    [[nodiscard]] std::string readToEnd();

    // Until `text` has come; false when the connection closed or 10 s passed before.
    [[nodiscard]] bool readUntil(std::string const& text);

private:
    bool readUntil(std::function<bool()> const& done);

    int socket = -1;
    bool connected = false;
    bool closed = false;
    std::string received;
};

// The answer to one request on a connection of its own, which the request asks to be closed.
[[nodiscard]] std::string exchange(std::uint16_t port, std::string const& requestLine,
                                   std::string const& host, RawHttp::Family family = RawHttp::Family::IPv4);

} // namespace workbench
