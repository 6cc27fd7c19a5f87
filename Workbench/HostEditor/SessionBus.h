#pragma once

#include <giomm/dbusconnection.h>
#include <sigc++/sigc++.h>

namespace workbench {

// The program's own connection to the session bus. Having none is a normal state: it then waits for one to
// come back, less and less eagerly. Main thread, on which its signals are emitted, too.
class SessionBus final {
public:
    SessionBus();
    ~SessionBus();
    SessionBus(SessionBus const&) = delete;
    SessionBus& operator=(SessionBus const&) = delete;

    // Null while there is no bus.
    [[nodiscard]] Glib::RefPtr<Gio::DBus::Connection> const& connection() const { return current; }

    // Calls `slot` for the connection that there is, at once, and for each later one.
    void onConnected(sigc::slot<void()> const& slot);

    // After the bus went away; `connection` is null by then.
    sigc::signal<void()>& signalLost() { return lost; }

private:
    void connect();
    void lose();
    void retryLater();

    Glib::RefPtr<Gio::DBus::Connection> current;
    sigc::connection closing;
    sigc::connection retry;
    unsigned pause; // seconds until the next attempt
    sigc::signal<void()> connected;
    sigc::signal<void()> lost;
};

// Keeps the toolkit's connection from ending the process when the bus goes away. Once, at the start.
void outliveSessionBus();

} // namespace workbench
