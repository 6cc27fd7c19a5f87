#include "Platform/Gtk/SdBusConnection.h"

#include "Ports/MainLoop.h"

#include <algorithm>
#include <utility>

namespace fcp {

namespace {

constexpr int longestDelay = 30; // seconds
constexpr int doublings = 5; // until the delay is longer than that

} // namespace

SdBusConnection::SdBusConnection(MainLoop& loop, std::optional<std::string> busAddress)
    : mainLoop(loop)
    , address(std::move(busAddress)) {
    connect();
}

SdBusConnection::~SdBusConnection() {
    if (retry)
        retry->invalidate();
}

SdBusMessagePointer SdBusConnection::makeSignal(SignalMatch const& names) {
    sd_bus_message* signal = nullptr;
    if (bus)
        (void)sd_bus_message_new_signal(bus.get(), &signal, names.path.c_str(), names.interface.c_str(),
                                        names.member.c_str());
    return SdBusMessagePointer(signal);
}

void SdBusConnection::send(SdBusMessagePointer message, std::size_t size) {
    if (bus)
        outbox.post(*bus, std::move(message), size);
}

void SdBusConnection::subscribe(SignalMatch match, Handler handler) {
    subscriptions.push_back({std::move(match), std::make_shared<Handler const>(std::move(handler))});
    if (bus)
        install(subscriptions.back());
}

// A bus that dies, or cuts us off, shows first as one or two successful steps, in which sd-bus answers what
// is still open and reports its own "Disconnected"; after these every step fails.
int SdBusConnection::step() {
    if (sd_bus_is_ready(bus.get()) > 0)
        failures = 0;
    int const sent = outbox.sendNext(*bus) ? 1 : 0;
    // A handler may destroy this connection: nothing of it is touched after this.
    int const processed = sd_bus_process(bus.get(), nullptr);
    return processed < 0 ? processed : processed + sent;
}

void SdBusConnection::busIsGone() {
    source.reset();
    outbox.clear();
    bus.reset(); // and with it the matches, which no other bus knows
    connectLater();
}

// Never blocks: sd-bus connects, introduces itself and installs the matches as the loop goes on. A bus that
// takes the connection and then says nothing is given up by sd-bus after 90 seconds.
void SdBusConnection::connect() {
    bus = openBus();
    if (!bus)
        return connectLater();
    source = std::make_unique<SdBusSource>(*bus, static_cast<SdBusSource::Client&>(*this));
    for (auto& subscription : subscriptions)
        install(subscription);
}

void SdBusConnection::connectLater() {
    auto const delay = std::min(1 << std::min(failures, doublings), longestDelay);
    ++failures;
    retry = mainLoop.timer(Seconds(delay), [this] { connect(); });
}

// Without a handler for the reply sd-bus closes a connection whose match the bus refuses, so that it is tried
// again like every other loss.
void SdBusConnection::install(Subscription& subscription) {
    auto const& match = subscription.match;
    (void)sd_bus_match_signal_async(bus.get(), nullptr, nullptr, match.path.c_str(), match.interface.c_str(),
                                    match.member.c_str(), signalArrived, nullptr, &subscription);
}

SdBusPointer SdBusConnection::openBus() const {
    sd_bus* opened = nullptr;
    if (!address)
        return SdBusPointer(sd_bus_open_user(&opened) >= 0 ? opened : nullptr);
    if (sd_bus_new(&opened) < 0)
        return nullptr;
    SdBusPointer result(opened);
    bool const started = sd_bus_set_address(opened, address->c_str()) >= 0 &&
                         sd_bus_set_bus_client(opened, 1) >= 0 && sd_bus_start(opened) >= 0;
    return started ? std::move(result) : nullptr;
}

int SdBusConnection::signalArrived(sd_bus_message* message, void* subscription, sd_bus_error*) noexcept {
    auto const handler = static_cast<Subscription*>(subscription)->handler;
    (*handler)(*message);
    return 0;
}

} // namespace fcp
