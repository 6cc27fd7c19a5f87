#pragma once

#include "Contract/TestBus.h"
#include "Workbench/HostEditor/WaitUntil.h"

#include <giomm.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace workbench {

// A session bus of the test's own, which it may take away.
class BusTest : public testing::Test {
protected:
    BusTest() {
        Gio::init();
        daemon.start();
        setenv("DBUS_SESSION_BUS_ADDRESS", daemon.address().c_str(), 1);
    }

    // A further program on the bus.
    [[nodiscard]] Glib::RefPtr<Gio::DBus::Connection> stranger() const {
        using Flags = Gio::DBus::ConnectionFlags;
        return Gio::DBus::Connection::create_for_address_sync(
            daemon.address(), Flags::AUTHENTICATION_CLIENT | Flags::MESSAGE_BUS_CONNECTION);
    }

    // What the stranger's call is answered with; nothing after an error.
    static Glib::VariantContainerBase call(Glib::RefPtr<Gio::DBus::Connection> const& from, char const* name,
                                           char const* path, char const* interface, char const* method,
                                           Glib::VariantContainerBase const& arguments) {
        Glib::RefPtr<Gio::AsyncResult> result;
        from->call(
            path, interface, method, arguments,
            [&](Glib::RefPtr<Gio::AsyncResult> const& ready) { result = ready; }, name, 5000);
        waitUntil([&] { return static_cast<bool>(result); });
        try {
            return from->call_finish(result);
        } catch (Glib::Error const&) {
            return {};
        }
    }

    static bool isOwned(Glib::RefPtr<Gio::DBus::Connection> const& asker, char const* name) {
        auto const answer = call(
            asker, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner",
            Glib::VariantContainerBase::create_tuple(Glib::Variant<Glib::ustring>::create(name)));
        if (!answer)
            return false;
        Glib::Variant<bool> owned;
        answer.get_child(owned, 0);
        return owned.get();
    }

    fcp::test::TestBus daemon;
};

} // namespace workbench
