#include "Workbench/ReviewPage/RawHttp.h"

#include <glib.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <string_view>

namespace workbench {

namespace {

constexpr std::chrono::seconds Patience{10};

template <typename Address>
bool connectTo(int socket, Address const& address) {
    return ::connect(socket, reinterpret_cast<sockaddr const*>(&address), sizeof address) == 0;
}

bool connectLoopback(int socket, std::uint16_t port, RawHttp::Family family) {
    if (family == RawHttp::Family::IPv4) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return connectTo(socket, address);
    }
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_port = htons(port);
    address.sin6_addr = in6addr_loopback;
    return connectTo(socket, address);
}

} // namespace

RawHttp::RawHttp(std::uint16_t port, Family family)
    : socket(::socket(family == Family::IPv4 ? AF_INET : AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0))
    , connected(connectLoopback(socket, port, family)) {}

RawHttp::~RawHttp() {
    ::close(socket);
}

void RawHttp::send(std::string const& bytes) {
    auto rest = std::string_view{bytes};
    auto const deadline = std::chrono::steady_clock::now() + Patience;
    while (!rest.empty() && !closed && std::chrono::steady_clock::now() < deadline) {
        auto const count = ::send(socket, rest.data(), rest.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count >= 0)
            rest.remove_prefix(static_cast<std::size_t>(count));
        else if (errno == EAGAIN)
            g_main_context_iteration(nullptr, FALSE);
        else
            closed = true;
    }
}

std::string RawHttp::readToEnd() {
    readUntil([this] { return closed; });
    return received + (closed ? "" : "(still open)");
}

bool RawHttp::readUntil(std::string const& text) {
    return readUntil([&] { return received.find(text) != std::string::npos; });
}

bool RawHttp::readUntil(std::function<bool()> const& done) {
    auto const deadline = std::chrono::steady_clock::now() + Patience;
    std::array<char, 4096> buffer{};
    while (!done() && !closed && std::chrono::steady_clock::now() < deadline) {
        g_main_context_iteration(nullptr, FALSE);
        auto const count = ::recv(socket, buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (count > 0)
            received.append(buffer.data(), static_cast<std::size_t>(count));
        else if (count == 0 || errno != EAGAIN)
            closed = true;
    }
    return done();
}

std::string exchange(std::uint16_t port, std::string const& requestLine, std::string const& host,
                     RawHttp::Family family) {
    RawHttp client{port, family};
    if (!client.isConnected())
        return "(no connection)";
    client.send(requestLine + " HTTP/1.1\r\nHost: " + host + "\r\nConnection: close\r\n\r\n");
    return client.readToEnd();
}

} // namespace workbench
