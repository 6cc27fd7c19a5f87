#include "FcpExtension/MessageHandler.h"

#include "FcpExtension/ContainerAppBridge.h"
#include "FcpExtension/EventScript.h"
#include "FcpExtension/HostNotificationQueue.h"
#include "FcpExtension/JsonWriter.h"
#include "FcpExtension/ProExtensionAPI.h"
#include "Ports/Platform.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>
#include <utility>

namespace fcp {

namespace {

constexpr double markerTolerance = 0.5; // seconds
constexpr char const* getMarkerAtTimeLabel = "getMarkerAtTime(seconds:threshold:)";

Json const* entry(Json const& body, char const* key) {
    auto const found = body.find(key);
    return found == body.end() ? nullptr : &*found;
}

// A value of the wrong type counts as absent; a boolean is no number.
std::optional<double> number(Json const& body, char const* key) {
    auto const* const value = entry(body, key);
    return value && value->is_number() ? std::optional(value->get<double>()) : std::nullopt;
}

std::optional<std::string> string(Json const& body, char const* key) {
    auto const* const value = entry(body, key);
    return value && value->is_string() ? std::optional(value->get<std::string>()) : std::nullopt;
}

bool isArrayOfObjects(Json const& value) {
    return value.is_array() && std::ranges::all_of(value, [](Json const& item) { return item.is_object(); });
}

std::optional<Json> toJson(bool value) {
    return value;
}

std::optional<Json> toJson(std::optional<Json> const& value) {
    return value;
}

template <typename T>
std::optional<Json> toJson(std::optional<T> const& value) {
    return value ? std::optional<Json>(*value) : std::nullopt;
}

// One line, whatever the error's text holds, and at once: a reader of the process's output follows it live.
void printEvaluationError(char const* event, std::string error) {
    std::ranges::replace_if(error, [](char c) { return c == '\n' || c == '\r'; }, ' ');
    std::printf("[Zelvix] evaluateJavaScript error for %s: %s\n", event, error.c_str());
    std::fflush(stdout);
}

} // namespace

std::shared_ptr<MessageHandler> MessageHandler::create(std::shared_ptr<WebView> const& webView,
                                                       Platform const& platform) {
    std::shared_ptr<MessageHandler> handler(new MessageHandler(platform));
    handler->webView = webView;
    handler->installHostCallbacks();
    return handler;
}

MessageHandler::MessageHandler(Platform const& platform)
    : proExtension(ProExtensionAPI::create(platform.hostRuntime, platform.mediaTime))
    , mainLoop(platform.mainLoop)
    , hostNotifications(std::make_shared<HostNotificationQueue>(platform.mainLoop)) {}

MessageHandler::~MessageHandler() = default;

// The handler is made strong on the main thread only: its last reference must not die on the host's thread.
void MessageHandler::installHostCallbacks() {
    proExtension->onPlayheadChanged([weak = weak_from_this(), queue = hostNotifications](double seconds) {
        queue->run([weak, seconds] {
            if (auto const self = weak.lock())
                self->handlePlayheadChange(seconds);
        });
    });
    proExtension->onSequenceChanged(
        [weak = weak_from_this(), queue = hostNotifications](Json const& sequenceInfo) {
            queue->run([weak, sequenceInfo] {
                if (auto const self = weak.lock())
                    self->sendToJS("fcp:sequence-changed", sequenceInfo);
            });
        });
}

void MessageHandler::setContainerBridge(std::shared_ptr<ContainerBridge> bridge) {
    containerBridge = std::move(bridge);
}

void MessageHandler::notifyConnected() {
    sendToJS("fcp:connected", Json::object());
    if (auto const sequenceInfo = proExtension->getSequenceInfo())
        sendToJS("fcp:sequence-changed", *sequenceInfo);
}

void MessageHandler::userContentController(UserContentController&, ScriptMessage const& message) {
    auto const self = shared_from_this(); // a command may end the panel
    if (message.name != "fcpBridge" || !message.body.is_object())
        return;
    auto const command = string(message.body, "command");
    if (!command)
        return;
    (this->*commandNamed(*command))(message.body, string(message.body, "resolveId"));
}

MessageHandler::Command MessageHandler::commandNamed(std::string const& name) {
    static constexpr std::array<std::pair<std::string_view, Command>, 13> commands{{
        {"getTimeline", &MessageHandler::handleGetTimeline},
        {"getPlayhead", &MessageHandler::handleGetPlayhead},
        {"seekTo", &MessageHandler::handleSeekTo},
        {"syncComment", &MessageHandler::handleSyncComment},
        {"deleteComment", &MessageHandler::handleDeleteComment},
        {"syncAllComments", &MessageHandler::handleSyncAllComments},
        {"clearAllMarkers", &MessageHandler::handleClearAllMarkers},
        {"startExport", &MessageHandler::handleStartExport},
        {"cancelExport", &MessageHandler::handleCancelExport},
        {"selectOutputFolder", &MessageHandler::handleSelectOutputFolder},
        {"getMarkerAtTime", &MessageHandler::handleGetMarkerAtTime},
        {"openURL", &MessageHandler::handleOpenURL},
        {"isFCPRunning", &MessageHandler::handleIsFCPRunning},
    }};
    auto const* const found =
        std::ranges::find_if(commands, [&name](auto const& command) { return command.first == name; });
    return found == commands.end() ? &MessageHandler::handleUnknown : found->second;
}

void MessageHandler::handlePlayheadChange(double seconds) {
    Json payload;
    payload["seconds"] = seconds;
    sendToJS("fcp:playhead-changed", payload);
    // In this form a previous time that is not a number fails the test too.
    auto const previousIsKnown = 0.0 <= previousPlayheadTime;
    if (previousIsKnown && std::abs(seconds - previousPlayheadTime) > jumpThreshold)
        checkForMarkerAtTime(seconds);
    previousPlayheadTime = seconds;
}

void MessageHandler::checkForMarkerAtTime(double seconds) {
    auto const bridge = containerBridge;
    if (!bridge)
        return;
    auto const lookUp = [seconds](ContainerBridge& container, Completion<std::optional<Json>> done) {
        container.getMarkerAtTime(seconds, markerTolerance, std::move(done));
    };
    start<std::optional<Json>>(
        bridge, getMarkerAtTimeLabel, lookUp,
        [self = shared_from_this(), seconds](Outcome<std::optional<Json>> const& outcome) {
            auto const* const marker = std::get_if<0>(&outcome);
            if (!marker || !*marker)
                return;
            auto payload = **marker;
            payload["seconds"] = seconds; // the playhead's, not the marker's own
            self->sendToJS("fcp:marker-clicked", payload);
        });
}

void MessageHandler::handleGetTimeline(Json const&, ResolveId const& resolveId) {
    resolve(resolveId, proExtension->getSequenceInfo());
}

// Stored like a notified position: the page knows it, so going on from there is no jump.
void MessageHandler::handleGetPlayhead(Json const&, ResolveId const& resolveId) {
    auto const seconds = proExtension->getPlayheadSeconds();
    previousPlayheadTime = seconds;
    resolve(resolveId, seconds);
}

void MessageHandler::handleSeekTo(Json const& body, ResolveId const& resolveId) {
    if (auto const seconds = number(body, "seconds")) {
        previousPlayheadTime = *seconds; // before the host moves: the page's own seek is no jump by the user
        proExtension->seekTo(*seconds);
    }
    resolve(resolveId, true); // also when nothing moved
}

// Hands over the whole message, where the other commands extract one entry.
void MessageHandler::handleSyncComment(Json const& body, ResolveId const& resolveId) {
    handleAsync<bool>(resolveId, "syncComment(_:)", [&body](ContainerBridge& bridge, Completion<bool> done) {
        bridge.syncComment(body, std::move(done));
    });
}

// Without its argument this command, like "syncAllComments" and "startExport", is never answered, where
// others answer without doing anything. The fallbacks are uneven on purpose: pages depend on each as it is.
void MessageHandler::handleDeleteComment(Json const& body, ResolveId const& resolveId) {
    auto const commentId = string(body, "commentId");
    if (!commentId)
        return;
    handleAsync<bool>(resolveId, "deleteComment(_:)",
                      [&commentId](ContainerBridge& bridge, Completion<bool> done) {
                          bridge.deleteComment(*commentId, std::move(done));
                      });
}

void MessageHandler::handleSyncAllComments(Json const& body, ResolveId const& resolveId) {
    auto const* const comments = entry(body, "comments");
    if (!comments || !isArrayOfObjects(*comments))
        return;
    handleAsync<bool>(resolveId, "syncAllComments(_:)",
                      [comments](ContainerBridge& bridge, Completion<bool> done) {
                          bridge.syncAllComments(*comments, std::move(done));
                      });
}

void MessageHandler::handleClearAllMarkers(Json const&, ResolveId const& resolveId) {
    handleAsync<bool>(resolveId, "clearAllMarkers()", [](ContainerBridge& bridge, Completion<bool> done) {
        bridge.clearAllMarkers(std::move(done));
    });
}

void MessageHandler::handleStartExport(Json const& body, ResolveId const& resolveId) {
    auto const* const config = entry(body, "config");
    if (!config || !config->is_object())
        return;
    handleAsync<bool>(resolveId, "startExport(_:)", [config](ContainerBridge& bridge, Completion<bool> done) {
        bridge.startExport(*config, std::move(done));
    });
}

void MessageHandler::handleCancelExport(Json const&, ResolveId const& resolveId) {
    handleAsync<bool>(resolveId, "cancelExport()", [](ContainerBridge& bridge, Completion<bool> done) {
        bridge.cancelExport(std::move(done));
    });
}

void MessageHandler::handleSelectOutputFolder(Json const&, ResolveId const& resolveId) {
    using Folder = std::optional<std::string>;
    handleAsync<Folder>(
        resolveId, "selectOutputFolder()",
        [](ContainerBridge& bridge, Completion<Folder> done) { bridge.selectOutputFolder(std::move(done)); });
}

void MessageHandler::handleGetMarkerAtTime(Json const& body, ResolveId const& resolveId) {
    auto const seconds = number(body, "seconds");
    if (!seconds)
        return resolve(resolveId, std::nullopt); // even without a bridge, where the others answer false
    auto const threshold = number(body, "threshold").value_or(markerTolerance);
    using Marker = std::optional<Json>;
    handleAsync<Marker>(resolveId, getMarkerAtTimeLabel,
                        [&](ContainerBridge& bridge, Completion<Marker> done) {
                            bridge.getMarkerAtTime(*seconds, threshold, std::move(done));
                        });
}

void MessageHandler::handleOpenURL(Json const& body, ResolveId const& resolveId) {
    auto const url = string(body, "url");
    if (auto const bridge = containerBridge; url && bridge)
        bridge->openURL(*url);
    resolve(resolveId, true); // also when nothing was opened
}

void MessageHandler::handleIsFCPRunning(Json const&, ResolveId const& resolveId) {
    resolve(resolveId, true); // a running extension means a running host
}

void MessageHandler::handleUnknown(Json const&, ResolveId const& resolveId) {
    resolve(resolveId, std::nullopt);
}

template <typename T>
void MessageHandler::handleAsync(ResolveId const& resolveId, char const* label,
                                 Operation<T> const& operation) {
    auto const bridge = containerBridge;
    if (!bridge)
        return resolve(resolveId, false);
    start<T>(bridge, label, operation, [self = shared_from_this(), resolveId](Outcome<T> const& outcome) {
        auto const* const value = std::get_if<0>(&outcome);
        self->resolve(resolveId, value ? toJson(*value) : std::optional<Json>(false));
    });
}

template <typename T>
void MessageHandler::start(std::shared_ptr<ContainerBridge> const& bridge, char const* label,
                           Operation<T> const& operation, std::function<void(Outcome<T> const&)> done) {
    auto const returned = std::make_shared<bool>(false);
    operation(*bridge, Completion<T>(label, [bridge, returned, done = std::move(done),
                                             loop = &mainLoop](Outcome<T> outcome) {
        if (*returned)
            return done(outcome);
        // The bridge completed inside the call: nobody expects an answer before the call has returned.
        loop->post([bridge, done, outcome = std::move(outcome)] { done(outcome); });
    }));
    *returned = true;
}

void MessageHandler::resolve(ResolveId const& resolveId, std::optional<Json> const& value) {
    if (!resolveId)
        return;
    auto text = value ? writeJson(*value) : std::nullopt;
    Json payload;
    payload["resolveId"] = *resolveId;
    payload["value"] = text ? std::move(*text) : "null";
    sendToJS("fcp:resolve", payload);
}

void MessageHandler::sendToJS(char const* event, Json const& data) {
    auto const page = webView.lock();
    if (!page)
        return;
    auto const payload = writeJson(data);
    if (!payload)
        return;
    page->evaluateJavaScript(eventScript(event, *payload), [event](std::optional<std::string> const& error) {
        if (error)
            printEvaluationError(event, *error);
    });
}

} // namespace fcp
