#include "FcpExtension/ContainerAppBridge.h"

#include "FcpExtension/FatalError.h"
#include "Ports/MainLoop.h"
#include "Ports/NotificationCenter.h"
#include "Ports/UuidGenerator.h"

#include <limits>
#include <utility>

namespace fcp {

namespace {

constexpr Seconds answerTimeout{60.0};
constexpr std::size_t uuidCharacters = 6;

void convert(Json const& result, bool& value) {
    value = result.is_boolean() && result.get<bool>();
}

void convert(Json const& result, std::optional<std::string>& value) {
    if (result.is_string())
        value = result.get<std::string>();
}

void convert(Json const& result, std::optional<Json>& value) {
    if (result.is_object())
        value = result;
}

// Reads an answer as `T` and resumes the completion with it; never with an error.
template <typename T>
auto resuming(Completion<T> done) {
    // Shared, because the table's callbacks are copyable and a completion is not.
    return [done = std::make_shared<Completion<T>>(std::move(done))](Json const& result) {
        T value{};
        convert(result, value);
        done->resume(std::move(value));
    };
}

} // namespace

std::shared_ptr<ContainerAppBridge> ContainerAppBridge::create(NotificationCenter& notificationCenter,
                                                               UuidGenerator& uuids, MainLoop& mainLoop,
                                                               std::int64_t commandsSent) {
    return std::shared_ptr<ContainerAppBridge>(
        new ContainerAppBridge(notificationCenter, uuids, mainLoop, commandsSent));
}

ContainerAppBridge::ContainerAppBridge(NotificationCenter& center, UuidGenerator& generator, MainLoop& loop,
                                       std::int64_t commandsSent)
    : requestCounter(commandsSent)
    , notificationCenter(center)
    , uuids(generator)
    , mainLoop(loop) {}

void ContainerAppBridge::openURL(std::string const& url) {
    // The answer is ignored, but the command holds its table entry like every other, until answer or
    // time-out.
    sendCommand("openURL", {{"url", url}}, [](Json const&) {});
}

void ContainerAppBridge::syncComment(Json comment, Completion<bool> done) {
    sendCommand("syncComment", {{"comment", std::move(comment)}}, resuming(std::move(done)));
}

void ContainerAppBridge::deleteComment(std::string const& commentId, Completion<bool> done) {
    sendCommand("deleteComment", {{"commentId", commentId}}, resuming(std::move(done)));
}

void ContainerAppBridge::syncAllComments(Json comments, Completion<bool> done) {
    sendCommand("syncAllComments", {{"comments", std::move(comments)}}, resuming(std::move(done)));
}

void ContainerAppBridge::clearAllMarkers(Completion<bool> done) {
    sendCommand("clearAllMarkers", Json::object(), resuming(std::move(done)));
}

void ContainerAppBridge::startExport(Json config, Completion<bool> done) {
    // Unlike a comment, the settings are not nested: their entries lie beside "command" and "requestId".
    sendCommand("startExport", std::move(config), resuming(std::move(done)));
}

void ContainerAppBridge::cancelExport(Completion<bool> done) {
    sendCommand("cancelExport", Json::object(), resuming(std::move(done)));
}

void ContainerAppBridge::selectOutputFolder(Completion<std::optional<std::string>> done) {
    sendCommand("selectOutputFolder", Json::object(), resuming(std::move(done)));
}

void ContainerAppBridge::getMarkerAtTime(double seconds, double threshold,
                                         Completion<std::optional<Json>> done) {
    sendCommand("getMarkerAtTime", {{"seconds", seconds}, {"threshold", threshold}},
                resuming(std::move(done)));
}

void ContainerAppBridge::handleResponse(Notification const& notification) {
    if (!notification.userInfo || !notification.userInfo->is_object())
        return;
    auto const& userInfo = *notification.userInfo;
    auto const requestId = userInfo.find("requestId");
    if (requestId == userInfo.end() || !requestId->is_string())
        return;
    auto const pending = pendingRequests.find(requestId->get_ref<std::string const&>());
    if (pending == pendingRequests.end())
        return;
    auto const self = shared_from_this();
    // The callback leaves its entry empty: it may send commands, which moves entries about, and a second
    // answer that arrives inside it must find the entry and do nothing.
    auto const callback = std::exchange(pending->second, nullptr);
    if (!callback)
        return;
    auto const key = pending->first;
    auto const result = userInfo.find("result");
    callback(result == userInfo.end() ? Json() : *result);
    // Removed only after its callback has returned, the other way round than on a time-out. Both orders are
    // part of the protocol's definition.
    pendingRequests.erase(key);
}

void ContainerAppBridge::sendCommand(std::string const& command, Json payload, Callback callback) {
    auto const requestId = nextRequestIdentifier();
    // Stored before the post, so that an answer which arrives inside it finds its entry.
    pendingRequests.insert_or_assign(requestId, std::move(callback));
    // Assigned after the payload's own entries: the envelope always wins.
    payload["command"] = command;
    payload["requestId"] = requestId;
    notificationCenter.post("com.zelvix.fcp.containerCommand", payload);
    mainLoop.after(answerTimeout, [weak = weak_from_this(), requestId] {
        if (auto const self = weak.lock())
            self->handleTimeout(requestId);
    });
}

std::string ContainerAppBridge::nextRequestIdentifier() {
    if (requestCounter == std::numeric_limits<std::int64_t>::max())
        fatalError("Arithmetic overflow: requestCounter");
    ++requestCounter;
    return "req-" + std::to_string(requestCounter) + "-" + uuids.uuid().substr(0, uuidCharacters);
}

void ContainerAppBridge::handleTimeout(std::string const& requestId) {
    auto entry = pendingRequests.extract(requestId);
    // Empty while the answer's callback is running: the request is answered already.
    if (entry.empty() || !entry.mapped())
        return;
    entry.mapped()(false); // the boolean, which every operation reads as its plain negative
}

} // namespace fcp
