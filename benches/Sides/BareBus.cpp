#include "benches/Sides/BareBus.h"

#include "benches/Sides/BusSupport.h"

#include <glib.h>
#include <systemd/sd-bus.h>

#include <cstdint>
#include <utility>

namespace fcp::bench {

namespace {

void appendComment(sd_bus_message* message, Comment const& comment) {
    insist(sd_bus_message_open_container(message, 'v', "a{sv}"), "comment");
    insist(sd_bus_message_append(message, "a{sv}", 5, "author", "s", comment.author.c_str(), "id", "s",
                                 comment.id.c_str(), "resolved", "b", comment.resolved, "seconds", "d",
                                 comment.seconds, "text", "s", comment.text.c_str()),
           "comment");
    insist(sd_bus_message_close_container(message), "comment");
}

void appendComments(sd_bus_message* message, std::vector<Comment> const& comments) {
    insist(sd_bus_message_open_container(message, 'e', "sv"), "comments");
    insist(sd_bus_message_append(message, "s", "comments"), "comments");
    insist(sd_bus_message_open_container(message, 'v', "av"), "comments");
    insist(sd_bus_message_open_container(message, 'a', "v"), "comments");
    for (auto const& comment : comments)
        appendComment(message, comment);
    for (int i = 0; i < 3; ++i)
        insist(sd_bus_message_close_container(message), "comments");
}

void appendText(sd_bus_message* message, char const* key, std::string const& text) {
    insist(sd_bus_message_append(message, "{sv}", key, "s", text.c_str()), key);
}

std::string readRequestId(sd_bus_message* response) {
    std::string requestId;
    insist(sd_bus_message_enter_container(response, 'a', "{sv}"), "response");
    while (sd_bus_message_enter_container(response, 'e', "sv") > 0) {
        char const* key = nullptr;
        char const* text = nullptr;
        int result = 0;
        insist(sd_bus_message_read_basic(response, 's', &key), "key");
        if (std::strcmp(key, "requestId") == 0) {
            insist(sd_bus_message_read(response, "v", "s", &text), key);
            requestId = text;
        } else {
            insist(sd_bus_message_read(response, "v", "b", &result), key);
        }
        insist(sd_bus_message_exit_container(response), "entry");
    }
    return requestId;
}

struct BusSource {
    GSource base;
    GPollFD poll;
    sd_bus* bus;
};

gboolean prepare(GSource* source, gint* timeout) {
    auto* const self = reinterpret_cast<BusSource*>(source);
    self->poll.events = static_cast<gushort>(sd_bus_get_events(self->bus));
    std::uint64_t due = UINT64_MAX;
    sd_bus_get_timeout(self->bus, &due);
    *timeout = due == UINT64_MAX ? -1 : 0;
    return due == 0;
}

gboolean check(GSource* source) {
    return reinterpret_cast<BusSource*>(source)->poll.revents != 0;
}

gboolean dispatch(GSource* source, GSourceFunc, gpointer) {
    auto* const bus = reinterpret_cast<BusSource*>(source)->bus;
    while (sd_bus_process(bus, nullptr) > 0) {
    }
    return G_SOURCE_CONTINUE;
}

GSourceFuncs busFunctions{prepare, check, dispatch, nullptr, nullptr, nullptr};

void attach(sd_bus* bus) {
    auto* const source = g_source_new(&busFunctions, sizeof(BusSource));
    auto* const self = reinterpret_cast<BusSource*>(source);
    self->bus = bus;
    self->poll.fd = sd_bus_get_fd(bus);
    g_source_add_poll(source, &self->poll);
    g_source_attach(source, nullptr);
}

} // namespace

BareBus::BareBus(Answered onAnswer)
    : onAnswered(std::move(onAnswer)) {
    auto const answered = [](sd_bus_message* response, void* self, sd_bus_error*) {
        static_cast<BareBus*>(self)->onAnswered(readRequestId(response));
        return 0;
    };
    insist(sd_bus_open_user(&bus), "session bus");
    insist(
        sd_bus_match_signal(bus, nullptr, nullptr, busPath, floorInterface, responseMember, answered, this),
        "match");
    attach(bus);
}

void BareBus::sendCommand(std::string const& requestId, std::vector<Comment> const& comments) {
    sd_bus_message* message = nullptr;
    insist(sd_bus_message_new_signal(bus, &message, busPath, floorInterface, commandMember), "signal");
    insist(sd_bus_message_open_container(message, 'a', "{sv}"), "command");
    appendText(message, "command", comments.empty() ? "deleteComment" : "syncAllComments");
    if (comments.empty())
        appendText(message, "commentId", "comment-4711");
    else
        appendComments(message, comments);
    appendText(message, "requestId", requestId);
    insist(sd_bus_message_close_container(message), "command");
    insist(sd_bus_send(bus, message, nullptr), "send");
    sd_bus_message_unref(message);
}

} // namespace fcp::bench
