#pragma once

#include "Platform/Gtk/SdBusOutbox.h"
#include "Platform/Gtk/SdBusPointers.h"
#include "Platform/Gtk/SdBusSource.h"

#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>

namespace fcp {

class MainLoop;
class Timer;

// Which signals a subscription hears, from any sender. The names must be valid D-Bus names.
struct SignalMatch {
    std::string path;
    std::string interface;
    std::string member;
};

// A private connection to the session bus that is always there to be used: while there is no bus it drops
// what is sent and tries again after 1, 2, 4 ... 30 seconds, and it subscribes again on the next one. Nothing
// is replayed, nothing is logged. Main thread only, handlers included; a handler may destroy the connection.
class SdBusConnection final : private SdBusSource::Client {
public:
    using Handler = std::function<void(sd_bus_message& signal)>;

    // Without an address the environment's session bus is meant, looked up at every attempt. `loop` must be
    // GLib's default main loop or move on with it.
    explicit SdBusConnection(MainLoop& loop, std::optional<std::string> busAddress = {});
    ~SdBusConnection() override;

    SdBusConnection(SdBusConnection const&) = delete;
    SdBusConnection& operator=(SdBusConnection const&) = delete;

    // An empty signal to fill and send; null while there is no bus.
    [[nodiscard]] SdBusMessagePointer makeSignal(SignalMatch const& names);

    // Writes what the socket takes before it returns, and never waits. `size` is the body's.
    void send(SdBusMessagePointer message, std::size_t size);

    // For as long as the connection lives.
    void subscribe(SignalMatch match, Handler handler);

private:
    // Its address is known to sd-bus.
    struct Subscription {
        SignalMatch match;
        std::shared_ptr<Handler const> handler;
    };

    int step() override;
    void busIsGone() override;
    void connect();
    void connectLater();
    void install(Subscription& subscription);
    [[nodiscard]] SdBusPointer openBus() const;
    static int signalArrived(sd_bus_message* message, void* subscription, sd_bus_error* error) noexcept;

    MainLoop& mainLoop;
    std::optional<std::string> address;
    std::list<Subscription> subscriptions;
    SdBusPointer bus;
    SdBusOutbox outbox;
    std::unique_ptr<SdBusSource> source;
    std::unique_ptr<Timer> retry;
    int failures = 0; // attempts since the last bus that let us in
};

} // namespace fcp
