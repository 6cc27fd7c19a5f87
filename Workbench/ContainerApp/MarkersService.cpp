#include "Workbench/ContainerApp/MarkersService.h"

#include "Workbench/ContainerApp/BusValue.h"

#include <glib.h>
#include <systemd/sd-bus.h>

#include <algorithm>

namespace workbench {

namespace {

constexpr char const* objectPath = "/com/zelvix/fcp/Markers";
constexpr char const* interfaceName = "com.zelvix.fcp.Markers1";

// A pin shows the beginning of a text; ten thousand whole ones might not fit into one message.
constexpr long longestText = 1000;

// Above this the bus does not refuse a message, it disconnects the sender.
constexpr std::size_t largestAnswer = 32UL * 1024 * 1024;

std::string beginning(std::string const& text) {
    auto const longer = g_utf8_strlen(text.c_str(), -1) > longestText;
    auto const* end =
        longer ? g_utf8_offset_to_pointer(text.c_str(), longestText) : text.c_str() + text.size();
    return text.substr(0, static_cast<std::size_t>(end - text.c_str()));
}

int appendMarker(sd_bus_message* message, Comment const& marker) {
    return sd_bus_message_append(
        message, "a{sv}", 7, "id", "s", marker.id.c_str(), "start", "d", marker.start, "duration", "d",
        marker.duration, "text", "s", beginning(marker.text).c_str(), "author", "s",
        beginning(marker.author).c_str(), "colour", "s", marker.colour.value_or("").c_str(), "resolved", "b",
        marker.resolved ? 1 : 0);
}

std::size_t sizeOf(std::vector<Comment> const& markers) {
    auto size = std::size_t{0};
    for (auto const& marker : markers)
        size += 256 + marker.id.size() + std::min<std::size_t>(marker.text.size(), 4 * longestText) +
                std::min<std::size_t>(marker.author.size(), 4 * longestText) +
                marker.colour.value_or("").size();
    return size;
}

int send(sd_bus_message* call, std::uint64_t revision, std::vector<Comment> const& markers) {
    sd_bus_message* made = nullptr;
    auto status = sd_bus_message_new_method_return(call, &made);
    auto const message = BusMessage{made};
    if (status >= 0)
        status = sd_bus_message_append(made, "t", revision);
    if (status >= 0)
        status = sd_bus_message_open_container(made, SD_BUS_TYPE_ARRAY, "a{sv}");
    for (auto const& marker : markers)
        if (status >= 0)
            status = appendMarker(made, marker);
    if (status >= 0)
        status = sd_bus_message_close_container(made);
    return status < 0 ? status : sd_bus_message_send(made);
}

} // namespace

MarkersService::MarkersService(Bus& theBus, CommentStore& theComments, SequenceStore& theSequences)
    : bus{theBus}
    , comments{theComments}
    , sequences{theSequences} {}

sd_bus_vtable const* MarkersService::methods() {
    static auto const getMarkers = [](sd_bus_message* call, void* self, sd_bus_error*) {
        return static_cast<MarkersService*>(self)->getMarkers(call);
    };
    static sd_bus_vtable const table[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD_WITH_ARGS("GetMarkers", SD_BUS_ARGS("s", sequenceKey),
                                SD_BUS_RESULT("t", revision, "aa{sv}", markers), getMarkers,
                                SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_SIGNAL_WITH_ARGS("MarkersChanged", SD_BUS_ARGS("s", sequenceKey, "t", revision), 0),
        SD_BUS_VTABLE_END};
    return table;
}

bool MarkersService::publish() {
    sd_bus_slot* slot = nullptr;
    auto const status =
        sd_bus_add_object_vtable(bus.handle(), &slot, objectPath, interfaceName, methods(), this);
    object.reset(slot);
    return status >= 0;
}

void MarkersService::changed(std::string const& sequenceKey, std::uint64_t revision) {
    throttle.note({sequenceKey, revision});
    if (!timer.isPending())
        tellDue();
}

int MarkersService::getMarkers(sd_bus_message* call) {
    char const* key = nullptr;
    if (auto const status = sd_bus_message_read(call, "s", &key); status < 0)
        return status;
    try {
        auto const markers = comments.markers(key);
        if (sizeOf(markers) > largestAnswer)
            return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_LIMITS_EXCEEDED,
                                              "The markers do not fit into one message.");
        return send(call, sequences.revision(key), markers);
    } catch (DatabaseError const& error) {
        return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_FAILED, "%s", error.what());
    }
}

void MarkersService::tellDue() {
    for (auto const& change : throttle.takeDue(std::chrono::steady_clock::now()))
        sd_bus_emit_signal(bus.handle(), objectPath, interfaceName, "MarkersChanged", "st",
                           change.sequenceKey.c_str(), change.revision);
    auto const next = throttle.nextDue();
    if (!next)
        return;
    auto const wait = std::chrono::ceil<std::chrono::milliseconds>(*next - std::chrono::steady_clock::now());
    timer.start(wait, [this] { tellDue(); });
}

} // namespace workbench
