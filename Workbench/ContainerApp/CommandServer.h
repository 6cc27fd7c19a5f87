#pragma once

#include "Workbench/ContainerApp/Bus.h"
#include "Workbench/ContainerApp/Json.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <string>

namespace workbench {

// One answer that is owed. It is sent exactly once: what is not resolved by the time that the last owner lets
// go is answered with "nothing was done". Main thread only; nothing is sent when the connection has gone
// first.
class Reply {
public:
    // Sends an answer; told false, it was not possible to send it as it is.
    using Send = std::function<bool(Json const& result)>;

    Reply(Json nothingDone, Send send);
    ~Reply();

    Reply(Reply const&) = delete;
    Reply& operator=(Reply const&) = delete;

    // A result that the bus cannot carry becomes "nothing was done".
    void resolve(Json const& result);

private:
    Json nothingDone;
    Send send; // empty once it has been used
};

struct Command {
    std::string name; // empty when the message has none
    Json arguments; // an object, without the envelope
    std::shared_ptr<Reply> reply;
};

// Hears the panel's commands and sends the answers. Main thread only.
class CommandServer {
public:
    using Handler = std::function<void(Command const&)>;

    // Told of each answer that was sent; may be empty.
    using Observer = std::function<void(std::string const& line)>;

    CommandServer(Bus& bus, Handler handler, Observer observer);

    CommandServer(CommandServer const&) = delete;
    CommandServer& operator=(CommandServer const&) = delete;

    // False when the bus refuses.
    [[nodiscard]] bool listen();

    // Commands that come while it is held are handled in their order once it is released.
    void hold();
    void release();

private:
    using Clock = std::chrono::steady_clock;

    void receive(sd_bus_message* message);
    void handle(Json command);
    [[nodiscard]] bool answer(std::string const& requestId, Json const& result);
    [[nodiscard]] std::shared_ptr<Reply> replyTo(std::string const& name, std::string const& requestId);

    Bus& bus;
    Handler handler;
    Observer observer;
    bool held = false;
    std::deque<Json> waiting;
    std::shared_ptr<bool> alive =
        std::make_shared<bool>(true); // for replies, which may outlive the connection
};

} // namespace workbench
