#include "Workbench/HostEditor/EditorService.h"

#include "Workbench/HostEditor/Timecode.h"

#include <gio/gio.h>

#include <tuple>
#include <utility>
#include <vector>

namespace workbench {

namespace {

constexpr auto Name = "com.zelvix.fcp.Editor";
constexpr auto Path = "/com/zelvix/fcp/Editor";
constexpr auto Interface = "com.zelvix.fcp.Editor1";
constexpr auto Property = "ActiveSequence";
constexpr int Patience = 200; // milliseconds
constexpr auto Description = R"(<node>
  <interface name="com.zelvix.fcp.Editor1">
    <property name="ActiveSequence" type="a{sv}" access="read"/>
  </interface>
</node>)";

template <typename Value>
Glib::VariantBase variant(Value const& value) {
    return Glib::Variant<Value>::create(value);
}

} // namespace

EditorService::EditorService(SessionBus& sessionBus)
    : bus(sessionBus)
    , table({}, [this](Glib::VariantBase& value, auto const&...) { value = property(); }) {
    bus.onConnected(sigc::mem_fun(*this, &EditorService::publish));
    bus.signalLost().connect(sigc::mem_fun(*this, &EditorService::forget));
}

EditorService::~EditorService() {
    forget();
}

void EditorService::setActiveSequence(std::optional<SequenceFacts> sequence) {
    active = std::move(sequence);
    if (!published)
        return;
    auto const changed = Dictionary{{Property, property()}};
    auto signal = Glib::VariantContainerBase::create_tuple(
        {variant(Glib::ustring{Interface}), variant(changed), variant(std::vector<Glib::ustring>{})});
    // Without an answer: where the bus has just gone, it is asked again when it is back.
    g_dbus_connection_emit_signal(published->gobj(), nullptr, Path, "org.freedesktop.DBus.Properties",
                                  "PropertiesChanged", signal.gobj(), nullptr);
    waitUntilTaken();
}

// The panel has a connection of its own, and what it asks for next is meant for this sequence. The bus
// answers when it has passed on what it was sent before; one that stands still must not hold up the window.
void EditorService::waitUntilTaken() const {
    try {
        published->call_sync("/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId", {},
                             "org.freedesktop.DBus", Patience);
    } catch (Glib::Error const&) {
        return;
    }
}

// The object first: whoever sees the name may ask at once.
void EditorService::publish() {
    published = bus.connection();
    auto const description = Gio::DBus::NodeInfo::create_for_xml(Description);
    object = published->register_object(Path, description->lookup_interface(Interface), table);
    name = g_bus_own_name_on_connection(published->gobj(), Name, G_BUS_NAME_OWNER_FLAGS_NONE, nullptr,
                                        nullptr, nullptr, nullptr);
}

void EditorService::forget() {
    if (name != 0)
        g_bus_unown_name(std::exchange(name, 0));
    if (published && object != 0)
        published->unregister_object(std::exchange(object, 0));
    published.reset();
}

Glib::Variant<EditorService::Dictionary> EditorService::property() const {
    Dictionary members;
    if (active) {
        auto const frame = std::tuple<gint64, gint64>{active->rate.denominator, active->rate.numerator};
        members = {{"key", variant(Glib::ustring{active->key})},
                   {"name", variant(Glib::ustring{active->name})},
                   {"uri", variant(Glib::ustring{active->uri})},
                   {"frameDuration", variant(frame)},
                   {"durationFrames", variant(gint64{active->length})},
                   {"start", variant(gint64{0})},
                   {"dropFrame", variant(leavesOutLabels(active->rate))}};
    }
    return Glib::Variant<Dictionary>::create(members);
}

} // namespace workbench
