#include "Workbench/HostEditor/SessionBus.h"

#include <gio/gio.h>
#include <glibmm/main.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace workbench {

namespace {

constexpr unsigned FirstPause = 1;
constexpr unsigned LongestPause = 30;

// Empty when there is none. Asking GIO would start a bus of our own where a display is found, and leave it
// behind.
std::string address() {
    if (auto const* const given = std::getenv("DBUS_SESSION_BUS_ADDRESS"); given && *given)
        return given;
    auto const* const runtime = std::getenv("XDG_RUNTIME_DIR");
    if (!runtime)
        return {};
    std::error_code error;
    auto const socket = std::filesystem::path{runtime} / "bus";
    return std::filesystem::exists(socket, error) ? "unix:path=" + socket.string() : std::string{};
}

Glib::RefPtr<Gio::DBus::Connection> openConnection() {
    auto const where = address();
    if (where.empty())
        return {};
    using Flags = Gio::DBus::ConnectionFlags;
    try {
        return Gio::DBus::Connection::create_for_address_sync(where, Flags::AUTHENTICATION_CLIENT |
                                                                         Flags::MESSAGE_BUS_CONNECTION);
    } catch (Glib::Error const&) {
        return {};
    }
}

} // namespace

SessionBus::SessionBus()
    : pause(FirstPause) {
    connect();
}

SessionBus::~SessionBus() {
    retry.disconnect();
    closing.disconnect();
}

void SessionBus::onConnected(sigc::slot<void()> const& slot) {
    connected.connect(slot);
    if (current)
        slot();
}

void SessionBus::connect() {
    current = openConnection();
    if (!current) {
        retryLater();
        return;
    }
    pause = FirstPause;
    closing = current->signal_closed().connect([this](bool, Glib::Error const&) { lose(); });
    connected.emit();
}

void SessionBus::lose() {
    closing.disconnect();
    current.reset();
    lost.emit();
    retryLater();
}

void SessionBus::retryLater() {
    retry = Glib::signal_timeout().connect_seconds(
        [this] {
            connect();
            return false;
        },
        pause);
    pause = std::min(2 * pause, LongestPause);
}

void outliveSessionBus() {
    if (address().empty())
        return;
    // Never given back: whoever asks for the shared connection later gets this one, with the exit taken out.
    static auto* const shared = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (shared)
        g_dbus_connection_set_exit_on_close(shared, FALSE);
}

} // namespace workbench
