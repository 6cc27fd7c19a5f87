#include "Workbench/HostEditor/PinsClient.h"

#include "Workbench/HostEditor/ContainerName.h"

#include <gio/gio.h>
#include <giomm/dbuswatchname.h>

#include <utility>

namespace workbench {

namespace {

constexpr auto Path = "/com/zelvix/fcp/Markers";
constexpr auto Interface = "com.zelvix.fcp.Markers1";
constexpr auto AnswerType = "(taa{sv})";
constexpr int Patience = 5000; // milliseconds

using Value = std::unique_ptr<GVariant, decltype(&g_variant_unref)>;

Value member(Glib::VariantBase const& dictionary, char const* key, GVariantType const* type) {
    return {g_variant_lookup_value(const_cast<GVariant*>(dictionary.gobj()), key, type), &g_variant_unref};
}

std::string text(Glib::VariantBase const& dictionary, char const* key) {
    auto const value = member(dictionary, key, G_VARIANT_TYPE_STRING);
    return value ? g_variant_get_string(value.get(), nullptr) : std::string{};
}

double number(Glib::VariantBase const& dictionary, char const* key) {
    auto const value = member(dictionary, key, G_VARIANT_TYPE_DOUBLE);
    return value ? g_variant_get_double(value.get()) : 0.0;
}

} // namespace

Pin readPin(Glib::VariantBase const& marker) {
    auto const resolved = member(marker, "resolved", G_VARIANT_TYPE_BOOLEAN);
    return {.id = text(marker, "id"),
            .start = number(marker, "start"),
            .duration = number(marker, "duration"),
            .text = text(marker, "text"),
            .author = text(marker, "author"),
            .colour = text(marker, "colour"),
            .isResolved = resolved && g_variant_get_boolean(resolved.get())};
}

std::shared_ptr<PinsClient> PinsClient::create(SessionBus& bus) {
    std::shared_ptr<PinsClient> client{new PinsClient{bus}};
    // Only here: callbacks hold it weakly, which a constructor cannot.
    bus.onConnected(sigc::mem_fun(*client, &PinsClient::begin));
    bus.signalLost().connect(sigc::mem_fun(*client, &PinsClient::end));
    return client;
}

PinsClient::PinsClient(SessionBus& sessionBus)
    : bus(sessionBus) {}

PinsClient::~PinsClient() {
    disconnect();
}

void PinsClient::follow(std::string sequenceKey) {
    key = std::move(sequenceKey);
    known.clear();
    changed.emit();
    if (live)
        pull();
}

void PinsClient::begin() {
    followed = bus.connection();
    subscription = followed->signal_subscribe(
        [this](auto const&, auto const&, auto const&, auto const&, auto const&,
               Glib::VariantContainerBase const& arguments) { markersChanged(arguments); },
        ContainerName, Interface, "MarkersChanged", Path);
    watch = Gio::DBus::watch_name(
        followed, ContainerName, [this](auto const&...) { setLive(true); },
        [this](auto const&...) { setLive(false); });
}

void PinsClient::disconnect() {
    if (watch != 0)
        Gio::DBus::unwatch_name(std::exchange(watch, 0));
    if (followed && subscription != 0)
        followed->signal_unsubscribe(std::exchange(subscription, 0));
    followed.reset();
}

void PinsClient::end() {
    disconnect();
    setLive(false);
}

void PinsClient::setLive(bool present) {
    if (std::exchange(live, present) != present)
        changed.emit();
    if (live)
        pull();
}

void PinsClient::markersChanged(Glib::VariantContainerBase const& arguments) {
    if (arguments.get_type_string() != "(st)")
        return;
    Glib::Variant<Glib::ustring> sequenceKey;
    arguments.get_child(sequenceKey, 0);
    if (sequenceKey.get().raw() == key)
        pull();
}

void PinsClient::pull() {
    if (key.empty() || !followed)
        return;
    if (std::exchange(isAsking, true)) {
        askAgain = true;
        return;
    }
    auto const question = Glib::VariantContainerBase::create_tuple(Glib::Variant<Glib::ustring>::create(key));
    // The answer belongs to the connection that was asked, whatever has become of it.
    auto answered = [weak = weak_from_this(), asked = key,
                     connection = followed](Glib::RefPtr<Gio::AsyncResult> const& result) {
        auto const self = weak.lock();
        try {
            auto const answer = connection->call_finish(result);
            if (self)
                self->pulled(&answer, asked);
        } catch (Glib::Error const&) {
            if (self)
                self->pulled(nullptr, asked);
        }
    };
    followed->call(Path, Interface, "GetMarkers", question, answered, ContainerName, Patience,
                   Gio::DBus::CallFlags::NO_AUTO_START, Glib::VariantType{AnswerType});
}

void PinsClient::pulled(Glib::VariantContainerBase const* answer, std::string const& sequenceKey) {
    isAsking = false;
    if (answer && sequenceKey == key)
        settle(*answer);
    if (std::exchange(askAgain, false))
        pull();
}

void PinsClient::settle(Glib::VariantContainerBase const& answer) {
    Glib::VariantContainerBase markers;
    answer.get_child(markers, 1);
    std::vector<Pin> pins;
    for (std::size_t index = 0; index < markers.get_n_children(); ++index) {
        Glib::VariantBase marker;
        markers.get_child(marker, index);
        pins.push_back(readPin(marker));
    }
    known = std::move(pins);
    changed.emit();
}

} // namespace workbench
