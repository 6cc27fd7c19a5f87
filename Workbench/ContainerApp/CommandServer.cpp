#include "Workbench/ContainerApp/CommandServer.h"

#include "Workbench/ContainerApp/BusValue.h"
#include "Workbench/ContainerApp/CommentReader.h"
#include "Workbench/ContainerApp/Elapsed.h"

#include <systemd/sd-bus.h>

#include <utility>

namespace workbench {

namespace {

constexpr char const* channelPath = "/com/zelvix/fcp";
constexpr char const* channelInterface = "com.zelvix.fcp";
constexpr char const* commandRule =
    "type='signal',path='/com/zelvix/fcp',interface='com.zelvix.fcp',member='containerCommand'";

// Above this the bus does not refuse a message, it disconnects the sender.
constexpr std::size_t largestAnswer = 16UL * 1024 * 1024;

// What the panel takes for "no": the yes/no commands want a real boolean, the others a value or none.
Json nothingDone(std::string const& name) {
    auto const wantsValue = name == "selectOutputFolder" || name == "getMarkerAtTime";
    return wantsValue ? Json{} : Json(false);
}

std::string summary(Json const& result) {
    return result.is_object() ? "a marker" : result.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::size_t sizeOf(Json const& value) {
    auto size = std::size_t{16};
    if (value.is_string())
        size += value.get_ref<std::string const&>().size();
    if (value.is_structured())
        for (auto const& [key, member] : value.items())
            size += key.size() + sizeOf(member);
    return size;
}

} // namespace

Reply::Reply(Json theNothingDone, Send theSend)
    : nothingDone(std::move(theNothingDone)) // braces would make a list of it
    , send{std::move(theSend)} {}

Reply::~Reply() {
    resolve(nothingDone);
}

void Reply::resolve(Json const& result) {
    auto const sending = std::exchange(send, {});
    if (sending && !sending(result))
        sending(nothingDone);
}

CommandServer::CommandServer(Bus& theBus, Handler theHandler, Observer theObserver)
    : bus{theBus}
    , handler{std::move(theHandler)}
    , observer{std::move(theObserver)} {}

bool CommandServer::listen() {
    return bus.match(commandRule, [this](sd_bus_message* message) { receive(message); });
}

void CommandServer::hold() {
    held = true;
}

void CommandServer::release() {
    held = false;
    while (!held && !waiting.empty()) {
        auto command = std::move(waiting.front());
        waiting.pop_front();
        handle(std::move(command));
    }
}

void CommandServer::receive(sd_bus_message* message) {
    if (sd_bus_message_has_signature(message, "a{sv}") <= 0)
        return;
    auto command = readDictionary(message);
    if (!command || !member(*command, "requestId").is_string())
        return;
    if (held)
        waiting.push_back(std::move(*command));
    else
        handle(std::move(*command));
}

void CommandServer::handle(Json command) {
    auto const requestId = command["requestId"].get<std::string>();
    auto const& given = member(command, "command");
    auto const name = given.is_string() ? given.get<std::string>() : std::string{};
    command.erase("requestId");
    command.erase("command");
    handler({.name = name, .arguments = std::move(command), .reply = replyTo(name, requestId)});
}

std::shared_ptr<Reply> CommandServer::replyTo(std::string const& name, std::string const& requestId) {
    auto send = [this, weak = std::weak_ptr{alive}, begun = Clock::now(), name,
                 requestId](Json const& result) {
        if (weak.expired())
            return true;
        if (!answer(requestId, result))
            return false;
        if (observer)
            observer(name + " " + requestId + ": " + summary(result) + elapsedSince(begun));
        return true;
    };
    return std::make_shared<Reply>(nothingDone(name), std::move(send));
}

bool CommandServer::answer(std::string const& requestId, Json const& result) {
    if (sizeOf(result) > largestAnswer)
        return false;
    auto const message = bus.signal(channelPath, channelInterface, "containerResponse");
    if (!message || sd_bus_message_open_container(message.get(), SD_BUS_TYPE_ARRAY, "{sv}") < 0)
        return false;
    return appendMember(message.get(), "requestId", requestId) >= 0 &&
           appendMember(message.get(), "result", result) >= 0 &&
           sd_bus_message_close_container(message.get()) >= 0 && bus.send(message);
}

} // namespace workbench
