#include "Workbench/ReviewPage/PageServerControl.h"

#include "Platform/Gtk/GRef.h"
#include "Workbench/ReviewPage/PageServer.h"

#include <giomm.h>

namespace workbench {

namespace {

constexpr auto BusName = "com.zelvix.fcp.ReviewPage";
constexpr auto ObjectPath = "/com/zelvix/fcp/ReviewPage";
constexpr auto Introspection = R"(<node>
  <interface name="com.zelvix.fcp.ReviewPage1">
    <property name="Served" type="b" access="readwrite"/>
  </interface>
</node>)";

// A connection of our own: the shared one ends the process when the bus dies.
Glib::RefPtr<Gio::DBus::Connection> connectToSessionBus() {
    // The binding of this function loses the text that it is given.
    fcp::GCharPtr const address{g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)};
    if (!address)
        return {};
    try {
        return Gio::DBus::Connection::create_for_address_sync(
            address.get(), Gio::DBus::ConnectionFlags::AUTHENTICATION_CLIENT |
                               Gio::DBus::ConnectionFlags::MESSAGE_BUS_CONNECTION);
    } catch (Glib::Error const&) {
        return {};
    }
}

} // namespace

class PageServerControl::Service {
public:
    Service(PageServer& controlled, Glib::RefPtr<Gio::DBus::Connection> bus)
        : server(controlled)
        , connection(std::move(bus))
        , vtable({}, sigc::mem_fun(*this, &Service::read), sigc::mem_fun(*this, &Service::write))
        , registration(connection->register_object(ObjectPath, description(), vtable))
        // A second workbench waits in the queue for the name; its own server found the port taken anyway.
        , ownership(g_bus_own_name_on_connection(connection->gobj(), BusName, G_BUS_NAME_OWNER_FLAGS_NONE,
                                                 nullptr, nullptr, nullptr, nullptr)) {}

    ~Service() {
        g_bus_unown_name(ownership);
        connection->unregister_object(registration);
    }

    Service(Service const&) = delete;
    Service& operator=(Service const&) = delete;

private:
    static Glib::RefPtr<Gio::DBus::InterfaceInfo> description() {
        return Gio::DBus::NodeInfo::create_for_xml(Introspection)->lookup_interface();
    }

    void read(Glib::VariantBase& value, Glib::RefPtr<Gio::DBus::Connection> const&, Glib::ustring const&,
              Glib::ustring const&, Glib::ustring const&, Glib::ustring const&) {
        value = Glib::Variant<bool>::create(server.isServing());
    }

    bool write(Glib::RefPtr<Gio::DBus::Connection> const&, Glib::ustring const&, Glib::ustring const&,
               Glib::ustring const&, Glib::ustring const&, Glib::VariantBase const& value) {
        if (!Glib::VariantBase::cast_dynamic<Glib::Variant<bool>>(value).get()) {
            server.stop();
            return true;
        }
        if (auto const problem = server.start())
            throw Gio::DBus::Error(Gio::DBus::Error::FAILED, *problem);
        return true;
    }

    PageServer& server;
    Glib::RefPtr<Gio::DBus::Connection> connection;
    Gio::DBus::InterfaceVTable vtable;
    guint registration;
    guint ownership;
};

PageServerControl::PageServerControl(PageServer& server) {
    Gio::init();
    if (auto bus = connectToSessionBus())
        service = std::make_unique<Service>(server, std::move(bus));
}

PageServerControl::~PageServerControl() = default;

} // namespace workbench
