#pragma once

#include <functional>
#include <memory>
#include <string>

struct sd_bus;
struct sd_bus_message;
struct sd_bus_slot;

namespace workbench {

struct BusUnref {
    void operator()(sd_bus* bus) const;
    void operator()(sd_bus_message* message) const;
    void operator()(sd_bus_slot* slot) const;
};

using BusMessage = std::unique_ptr<sd_bus_message, BusUnref>;
using BusSlot = std::unique_ptr<sd_bus_slot, BusUnref>;

// One connection to the session bus, served by the main loop of the thread that opened it. Messages are
// handled from the main loop only, never inside one of the calls below: what arrives during one of them
// waits.
class Bus {
public:
    using Handler = std::function<void(sd_bus_message*)>;

    enum class Name { Owned, Taken, Failed };

    // None when there is no session bus; `problem` says why.
    [[nodiscard]] static std::unique_ptr<Bus> open(std::string& problem);

    ~Bus();

    Bus(Bus const&) = delete;
    Bus& operator=(Bus const&) = delete;

    [[nodiscard]] sd_bus* handle() const { return connection.get(); }

    // Takes a well-known name, unless another process has it.
    [[nodiscard]] Name requestName(std::string const& name);

    // Calls `handler` for each message that `rule` matches, for as long as the connection lasts. False when
    // the bus refused.
    [[nodiscard]] bool match(std::string const& rule, Handler handler);

    // Calls a method and hands over the answer, which may be an error; a call to nobody is answered, too.
    void call(BusMessage message, Handler answered);

    // A call of `interface`.`member` that starts no service.
    [[nodiscard]] BusMessage methodCall(char const* destination, char const* path, char const* interface,
                                        char const* member) const;
    [[nodiscard]] BusMessage signal(char const* path, char const* interface, char const* member) const;

    // False when the message is not valid or the connection is gone.
    bool send(BusMessage const& message);

    // Starts serving. `lost` runs once from the main loop when the bus goes away; it may destroy this object.
    void serve(std::function<void()> lost);

    // Handles what the bus has for us at this moment: at most a few thousand messages, and for a second.
    void drain();

private:
    struct Source;

    struct DestroySource {
        void operator()(Source* ended) const;
    };

    explicit Bus(std::unique_ptr<sd_bus, BusUnref> theConnection);

    std::unique_ptr<sd_bus, BusUnref> connection;
    std::unique_ptr<Source, DestroySource> source;
};

} // namespace workbench
