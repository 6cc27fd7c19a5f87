#include "Workbench/ContainerApp/EditorClient.h"

#include "Workbench/ContainerApp/BusValue.h"
#include "Workbench/ContainerApp/CommentReader.h"

#include <systemd/sd-bus.h>

#include <cstdint>
#include <utility>

namespace workbench {

namespace {

constexpr char const* editorName = "com.zelvix.fcp.Editor";
constexpr char const* editorPath = "/com/zelvix/fcp/Editor";
constexpr char const* editorInterface = "com.zelvix.fcp.Editor1";
constexpr char const* propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr char const* sequenceProperty = "ActiveSequence";

constexpr char const* ownerRule =
    "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
    "member='NameOwnerChanged',arg0='com.zelvix.fcp.Editor'";
constexpr char const* propertiesRule =
    "type='signal',path='/com/zelvix/fcp/Editor',interface='org.freedesktop.DBus.Properties',"
    "member='PropertiesChanged',arg0='com.zelvix.fcp.Editor1'";

std::optional<FrameRate> readRate(sd_bus_message* message) {
    auto value = std::int64_t{};
    auto timescale = std::int64_t{};
    if (sd_bus_message_read(message, "v", "(xx)", &value, &timescale) < 0 || value <= 0 || timescale <= 0)
        return {};
    return FrameRate{.numerator = timescale, .denominator = value};
}

bool nextIsRational(sd_bus_message* message) {
    char const* contents = nullptr;
    return sd_bus_message_peek_type(message, nullptr, &contents) > 0 && std::string{contents} == "(xx)";
}

std::string textOf(Json const& value) {
    return value.is_string() ? value.get<std::string>() : std::string{};
}

std::int64_t wholeOf(Json const& value) {
    return value.is_number_integer() ? value.get<std::int64_t>() : 0;
}

// The variant that holds the property. What is missing or of a wrong type has its default.
std::optional<HostSequence> readSequence(sd_bus_message* message) {
    auto members = Json::object();
    auto rate = std::optional<FrameRate>{};
    if (sd_bus_message_enter_container(message, 'v', "a{sv}") <= 0 ||
        sd_bus_message_enter_container(message, 'a', "{sv}") <= 0)
        return {};
    while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
        char const* key = nullptr;
        if (sd_bus_message_read(message, "s", &key) < 0)
            return {};
        if (nextIsRational(message))
            rate = readRate(message);
        else
            members[key] = readVariant(message).value_or(Json{});
        sd_bus_message_exit_container(message);
    }
    sd_bus_message_exit_container(message);
    sd_bus_message_exit_container(message);
    if (textOf(member(members, "key")).empty())
        return {};
    return HostSequence{.key = textOf(member(members, "key")),
                        .name = textOf(member(members, "name")),
                        .uri = textOf(member(members, "uri")),
                        .rate = rate,
                        .durationFrames = wholeOf(member(members, "durationFrames")),
                        .firstFrame = wholeOf(member(members, "start")),
                        .dropFrame = member(members, "dropFrame") == Json(true)};
}

} // namespace

EditorClient::EditorClient(Bus& theBus, Observer theObserver)
    : bus{theBus}
    , observer{std::move(theObserver)} {}

bool EditorClient::follow() {
    auto const followed = bus.match(ownerRule, [this](sd_bus_message* message) {
        ownerChanged(message);
    }) && bus.match(propertiesRule, [this](sd_bus_message* message) { propertiesChanged(message); });
    if (followed)
        ask();
    return followed;
}

void EditorClient::ask() {
    auto message = bus.methodCall(editorName, editorPath, propertiesInterface, "Get");
    if (!message || sd_bus_message_append(message.get(), "ss", editorInterface, sequenceProperty) < 0)
        return;
    asking = true;
    bus.call(std::move(message),
             [this, question = ++questions](sd_bus_message* reply) { answered(reply, question); });
    observer();
}

void EditorClient::answered(sd_bus_message* message, int question) {
    // The editor that was asked has gone, or has told by itself in the meantime.
    if (question != questions || !asking)
        return;
    if (sd_bus_message_is_method_error(message, nullptr) > 0) {
        settle({});
        return;
    }
    owner = sd_bus_message_get_sender(message);
    settle(readSequence(message));
}

void EditorClient::ownerChanged(sd_bus_message* message) {
    char const* name = nullptr;
    char const* before = nullptr;
    char const* after = nullptr;
    if (sd_bus_message_read(message, "sss", &name, &before, &after) < 0)
        return;
    owner = after;
    if (owner.empty())
        settle({});
    else
        ask();
}

void EditorClient::propertiesChanged(sd_bus_message* message) {
    char const* sender = sd_bus_message_get_sender(message);
    if (!sender || owner != sender)
        return;
    if (sd_bus_message_skip(message, "s") < 0 || sd_bus_message_enter_container(message, 'a', "{sv}") <= 0)
        return;
    while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
        char const* property = nullptr;
        if (sd_bus_message_read(message, "s", &property) < 0)
            return;
        if (std::string{property} == sequenceProperty) {
            settle(readSequence(message));
            return;
        }
        if (sd_bus_message_skip(message, "v") < 0 || sd_bus_message_exit_container(message) < 0)
            return;
    }
    // Named without its value, or not at all.
    ask();
}

void EditorClient::settle(std::optional<HostSequence> found) {
    asking = false;
    sequence = std::move(found);
    observer();
}

} // namespace workbench
