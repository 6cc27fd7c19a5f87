#include "Platform/Gtk/SdBusSource.h"

#include "Platform/Gtk/TurnBudget.h"

#include <cstdint>

namespace fcp {

// GLib allocates it, so it holds plain data only.
struct SdBusSource::Source {
    enum class Turn { WhenWoken, PassOnce, AtOnce };

    GSource base;
    GPollFD poll;
    sd_bus* bus;
    Client* client;
    Turn turn;

    // The descriptor changes when sd-bus goes on to the next address of a list.
    void watch(int descriptor, int events) {
        poll.events = static_cast<gushort>(events);
        if (descriptor == poll.fd)
            return;
        if (poll.fd >= 0)
            g_source_remove_poll(&base, &poll);
        poll.fd = descriptor;
        g_source_add_poll(&base, &poll);
    }
};

SdBusSource::SdBusSource(sd_bus& bus, Client& client) {
    static GSourceFuncs functions{prepare, check, dispatch, nullptr, nullptr, nullptr};
    source = GRef<GSource>::adopt(g_source_new(&functions, sizeof(Source)));
    auto* const self = reinterpret_cast<Source*>(source.get());
    self->poll.fd = -1;
    self->bus = &bus;
    self->client = &client;
    self->turn = Source::Turn::WhenWoken;
    g_source_set_static_name(source.get(), "fcp::SdBusSource");
    g_source_attach(source.get(), nullptr);
}

SdBusSource::~SdBusSource() {
    g_source_destroy(source.get());
}

gboolean SdBusSource::prepare(GSource* base, gint* timeout) {
    auto* const self = reinterpret_cast<Source*>(base);
    *timeout = self->turn == Source::Turn::WhenWoken ? -1 : 0;
    if (self->turn == Source::Turn::PassOnce)
        return FALSE;
    int const events = sd_bus_get_events(self->bus);
    int const descriptor = sd_bus_get_fd(self->bus);
    // A connection that has closed has neither; the step tells.
    if (events < 0 || descriptor < 0)
        return TRUE;
    self->watch(descriptor, events);
    std::uint64_t deadline = 0; // microseconds of the clock that GLib's ready time uses too
    bool const limited = sd_bus_get_timeout(self->bus, &deadline) > 0;
    g_source_set_ready_time(base, limited ? static_cast<gint64>(deadline) : -1);
    return self->turn == Source::Turn::AtOnce ? TRUE : FALSE;
}

gboolean SdBusSource::check(GSource* base) {
    auto* const self = reinterpret_cast<Source*>(base);
    if (self->turn == Source::Turn::PassOnce) {
        self->turn = Source::Turn::AtOnce;
        return FALSE;
    }
    return self->poll.revents != 0 ? TRUE : FALSE;
}

gboolean SdBusSource::dispatch(GSource* base, GSourceFunc, gpointer) {
    auto* const self = reinterpret_cast<Source*>(base);
    TurnBudget const budget;
    do {
        int const result = self->client->step();
        if (g_source_is_destroyed(base))
            return G_SOURCE_REMOVE;
        if (result < 0) {
            self->client->busIsGone();
            return G_SOURCE_REMOVE;
        }
        if (result == 0) {
            self->turn = Source::Turn::WhenWoken;
            return G_SOURCE_CONTINUE;
        }
    } while (!budget.spent());
    // The loop runs only the highest priority that is ready: so this source stays out of one turn.
    self->turn = Source::Turn::PassOnce;
    return G_SOURCE_CONTINUE;
}

} // namespace fcp
