#pragma once

#include "FcpExtension/Completion.h"
#include "Ports/Json.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

namespace fcp {

class MainLoop;
class NotificationCenter;
class UuidGenerator;
struct Notification;

// The way to the container application. Every operation but the first waits for an answer without blocking;
// its command is on its way when the call returns, and `done` may be resumed inside the call. Main thread
// only. The labels of the completions are the operations' signatures.
class ContainerBridge {
public:
    virtual ~ContainerBridge() = default;

    // Returns at once; nobody learns whether the link was opened.
    virtual void openURL(std::string const& url) = 0;

    virtual void syncComment(Json comment, Completion<bool> done) = 0;
    virtual void deleteComment(std::string const& commentId, Completion<bool> done) = 0;
    virtual void syncAllComments(Json comments, Completion<bool> done) = 0; // an array of objects
    virtual void clearAllMarkers(Completion<bool> done) = 0;
    virtual void startExport(Json config, Completion<bool> done) = 0;
    virtual void cancelExport(Completion<bool> done) = 0;
    virtual void selectOutputFolder(Completion<std::optional<std::string>> done) = 0;

    // Seconds both. The marker comes as the container describes it.
    virtual void getMarkerAtTime(double seconds, double threshold, Completion<std::optional<Json>> done) = 0;
};

// Commands and answers as notifications, matched by a request identifier. A command that nobody answers
// within a minute completes with false, which reads as no folder and no marker where one was asked for.
// Silent, never fails, main thread only. Whoever creates it passes it every response notification; it
// registers nothing itself.
class ContainerAppBridge final : public ContainerBridge,
                                 public std::enable_shared_from_this<ContainerAppBridge> {
public:
    // `commandsSent` is where the counter in the identifiers starts.
    [[nodiscard]] static std::shared_ptr<ContainerAppBridge> create(NotificationCenter& notificationCenter,
                                                                    UuidGenerator& uuids, MainLoop& mainLoop,
                                                                    std::int64_t commandsSent = 0);

    ContainerAppBridge(ContainerAppBridge const&) = delete;
    ContainerAppBridge& operator=(ContainerAppBridge const&) = delete;

    void openURL(std::string const& url) override;
    void syncComment(Json comment, Completion<bool> done) override;
    void deleteComment(std::string const& commentId, Completion<bool> done) override;
    void syncAllComments(Json comments, Completion<bool> done) override;
    void clearAllMarkers(Completion<bool> done) override;
    void startExport(Json config, Completion<bool> done) override;
    void cancelExport(Completion<bool> done) override;
    void selectOutputFolder(Completion<std::optional<std::string>> done) override;
    void getMarkerAtTime(double seconds, double threshold, Completion<std::optional<Json>> done) override;

    // Completes the request that the notification answers, if any. Neither its name nor its sender is looked
    // at: the request identifier is the only tie.
    void handleResponse(Notification const& notification);

    // Commands still waiting for their answer.
    [[nodiscard]] std::size_t pendingRequestCount() const { return pendingRequests.size(); }

private:
    // Receives the answer, null for no value.
    using Callback = std::function<void(Json const& result)>;

    ContainerAppBridge(NotificationCenter& center, UuidGenerator& generator, MainLoop& loop,
                       std::int64_t commandsSent);

    void sendCommand(std::string const& command, Json payload, Callback callback);
    [[nodiscard]] std::string nextRequestIdentifier();
    void handleTimeout(std::string const& requestId);

    std::unordered_map<std::string, Callback> pendingRequests;
    std::int64_t requestCounter;

    NotificationCenter& notificationCenter;
    UuidGenerator& uuids;
    MainLoop& mainLoop;
};

} // namespace fcp
