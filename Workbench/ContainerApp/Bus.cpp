#include "Workbench/ContainerApp/Bus.h"

#include <glib.h>
#include <systemd/sd-bus.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <utility>

namespace workbench {

namespace {

// How many messages are handled in one turn of the main loop, so that a flood of commands leaves the window
// alive.
constexpr int messagesPerTurn = 64;

// At the end nobody may keep the program alive by sending on, nor the bus by silence.
constexpr int messagesAtEnd = 4096;
constexpr std::uint64_t microsecondsAtEnd = 1'000'000;

// For calls to the bus itself and to the editor; commands wait for some of them.
constexpr std::uint64_t callMicroseconds = 5'000'000;

int runHandler(sd_bus_message* message, void* handler, sd_bus_error*) {
    (*static_cast<Bus::Handler*>(handler))(message);
    return 0;
}

void deleteHandler(void* handler) {
    std::unique_ptr<Bus::Handler>(static_cast<Bus::Handler*>(handler));
}

// The connection keeps the registration, and with it the handler.
void leaveToBus(sd_bus_slot* slot) {
    auto const owner = BusSlot{slot};
    sd_bus_slot_set_destroy_callback(slot, deleteHandler);
    sd_bus_slot_set_floating(slot, 1);
}

int milliseconds(std::uint64_t until) {
    auto const now = static_cast<std::uint64_t>(g_get_monotonic_time());
    if (until <= now)
        return 0;
    return static_cast<int>(std::min<std::uint64_t>((until - now + 999) / 1000, 60'000));
}

} // namespace

void BusUnref::operator()(sd_bus* bus) const {
    sd_bus_flush_close_unref(bus);
}

void BusUnref::operator()(sd_bus_message* message) const {
    sd_bus_message_unref(message);
}

void BusUnref::operator()(sd_bus_slot* slot) const {
    sd_bus_slot_unref(slot);
}

// The connection as a source of the main loop. The memory belongs to GLib, which begins it with its own part.
struct Bus::Source {
    GSource base;
    GPollFD pollFd;
    sd_bus* bus;
    std::function<void()>* lost;

    static gboolean prepare(GSource* base, int* timeout);
    static gboolean check(GSource* base);
    static gboolean dispatch(GSource* base, GSourceFunc, void*);
    static void finalize(GSource* base);

    static Source& of(GSource* base) { return *reinterpret_cast<Source*>(base); }
};

gboolean Bus::Source::prepare(GSource* base, int* timeout) {
    auto& self = of(base);
    auto until = UINT64_MAX;
    auto const events = sd_bus_get_events(self.bus);
    sd_bus_get_timeout(self.bus, &until);
    self.pollFd.events = static_cast<gushort>(std::max(events, 0));
    *timeout = until == UINT64_MAX ? -1 : milliseconds(until);
    return events < 0 || *timeout == 0;
}

gboolean Bus::Source::check(GSource* base) {
    auto& self = of(base);
    auto until = UINT64_MAX;
    sd_bus_get_timeout(self.bus, &until);
    return self.pollFd.revents != 0 || (until != UINT64_MAX && milliseconds(until) == 0);
}

gboolean Bus::Source::dispatch(GSource* base, GSourceFunc, void*) {
    auto& self = of(base);
    auto status = 1;
    for (auto count = 0; status > 0 && count < messagesPerTurn; ++count)
        status = sd_bus_process(self.bus, nullptr);
    if (status >= 0 && sd_bus_is_open(self.bus) > 0)
        return G_SOURCE_CONTINUE;
    // Taken out first: the call may destroy the bus and this source.
    auto const lost = std::exchange(*self.lost, {});
    if (lost)
        lost();
    return G_SOURCE_REMOVE;
}

void Bus::Source::finalize(GSource* base) {
    std::unique_ptr<std::function<void()>>(of(base).lost);
}

void Bus::DestroySource::operator()(Source* ended) const {
    g_source_destroy(&ended->base);
    g_source_unref(&ended->base);
}

Bus::Bus(std::unique_ptr<sd_bus, BusUnref> theConnection)
    : connection{std::move(theConnection)} {}

Bus::~Bus() = default;

std::unique_ptr<Bus> Bus::open(std::string& problem) {
    sd_bus* bus = nullptr;
    char const* name = nullptr;
    auto status = sd_bus_open_user_with_description(&bus, "zelvix-container");
    auto connection = std::unique_ptr<sd_bus, BusUnref>{bus};
    // The name is there only when the bus has really let us in.
    if (status >= 0)
        status = sd_bus_get_unique_name(bus, &name);
    if (status < 0) {
        problem = std::strerror(-status);
        return {};
    }
    sd_bus_set_method_call_timeout(bus, callMicroseconds);
    return std::unique_ptr<Bus>{new Bus{std::move(connection)}};
}

Bus::Name Bus::requestName(std::string const& name) {
    auto const status = sd_bus_request_name(handle(), name.c_str(), 0);
    if (status == -EEXIST)
        return Name::Taken;
    return status < 0 ? Name::Failed : Name::Owned;
}

bool Bus::match(std::string const& rule, Handler handler) {
    auto kept = std::make_unique<Handler>(std::move(handler));
    sd_bus_slot* slot = nullptr;
    if (sd_bus_add_match(handle(), &slot, rule.c_str(), runHandler, kept.get()) < 0)
        return false;
    leaveToBus(slot);
    std::ignore = kept.release();
    return true;
}

void Bus::call(BusMessage message, Handler answered) {
    auto kept = std::make_unique<Handler>(std::move(answered));
    sd_bus_slot* slot = nullptr;
    if (sd_bus_call_async(handle(), &slot, message.get(), runHandler, kept.get(), 0) < 0)
        return;
    leaveToBus(slot);
    std::ignore = kept.release();
}

BusMessage Bus::methodCall(char const* destination, char const* path, char const* interface,
                           char const* member) const {
    sd_bus_message* message = nullptr;
    sd_bus_message_new_method_call(handle(), &message, destination, path, interface, member);
    if (message)
        sd_bus_message_set_auto_start(message, 0);
    return BusMessage{message};
}

BusMessage Bus::signal(char const* path, char const* interface, char const* member) const {
    sd_bus_message* message = nullptr;
    sd_bus_message_new_signal(handle(), &message, path, interface, member);
    return BusMessage{message};
}

bool Bus::send(BusMessage const& message) {
    return message && sd_bus_send(handle(), message.get(), nullptr) >= 0;
}

void Bus::serve(std::function<void()> lost) {
    static auto functions =
        GSourceFuncs{Source::prepare, Source::check, Source::dispatch, Source::finalize, nullptr, nullptr};
    auto* made = &Source::of(g_source_new(&functions, sizeof(Source)));
    source.reset(made);
    made->bus = handle();
    made->lost = new std::function<void()>{std::move(lost)};
    made->pollFd = {sd_bus_get_fd(handle()), 0, 0};
    g_source_set_static_name(&made->base, "session bus");
    g_source_add_poll(&made->base, &made->pollFd);
    g_source_attach(&made->base, g_main_context_get_thread_default());
}

void Bus::drain() {
    // The bus keeps what does not fit into the socket, and everything in its order: what it had for us when
    // we ask comes before its answer.
    auto const answered = std::make_shared<bool>(false);
    call(methodCall("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus.Peer", "Ping"),
         [answered](sd_bus_message*) { *answered = true; });
    auto const until = static_cast<std::uint64_t>(g_get_monotonic_time()) + microsecondsAtEnd;
    for (auto count = 0; !*answered && count < messagesAtEnd;) {
        auto const status = sd_bus_process(handle(), nullptr);
        auto const now = static_cast<std::uint64_t>(g_get_monotonic_time());
        if (status < 0 || now >= until)
            return;
        if (status > 0)
            ++count;
        else
            sd_bus_wait(handle(), until - now);
    }
}

} // namespace workbench
