#pragma once

#include "FcpExtension/Completion.h"
#include "Ports/WebView.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

namespace fcp {

class ContainerBridge;
class HostNotificationQueue;
class MainLoop;
class ProExtensionAPI;
struct Platform;

// The web bridge: carries out the commands that a page posts, answers them, and pushes events into the page.
// One handler serves one web view, which it never keeps alive; when that is gone, everything sent is dropped.
// Commands never fail towards the page: every outcome is a value, or, for a few malformed requests, no answer
// at all.
//
// Main thread only. The host may notify on another thread; those two callbacks hop.
class MessageHandler final : public ScriptMessageHandler,
                             public std::enable_shared_from_this<MessageHandler> {
public:
    // The only way to make a handler: its callbacks need a weak reference, which no constructor has.
    [[nodiscard]] static std::shared_ptr<MessageHandler> create(std::shared_ptr<WebView> const& webView,
                                                                Platform const& platform);
    ~MessageHandler() override;

    MessageHandler(MessageHandler const&) = delete;
    MessageHandler& operator=(MessageHandler const&) = delete;

    // Replaces any earlier bridge. Requests that were answered without one are not repeated.
    void setContainerBridge(std::shared_ptr<ContainerBridge> bridge);

    // Sends "fcp:connected", then "fcp:sequence-changed" when the host has an active sequence.
    void notifyConnected();

    void userContentController(UserContentController& controller, ScriptMessage const& message) override;

private:
    using ResolveId = std::optional<std::string>;
    using Command = void (MessageHandler::*)(Json const& body, ResolveId const& resolveId);

    explicit MessageHandler(Platform const& platform);
    void installHostCallbacks();
    [[nodiscard]] static Command commandNamed(std::string const& name);

    void handlePlayheadChange(double seconds);
    void checkForMarkerAtTime(double seconds);

    void handleGetTimeline(Json const& body, ResolveId const& resolveId);
    void handleGetPlayhead(Json const& body, ResolveId const& resolveId);
    void handleSeekTo(Json const& body, ResolveId const& resolveId);
    void handleSyncComment(Json const& body, ResolveId const& resolveId);
    void handleDeleteComment(Json const& body, ResolveId const& resolveId);
    void handleSyncAllComments(Json const& body, ResolveId const& resolveId);
    void handleClearAllMarkers(Json const& body, ResolveId const& resolveId);
    void handleStartExport(Json const& body, ResolveId const& resolveId);
    void handleCancelExport(Json const& body, ResolveId const& resolveId);
    void handleSelectOutputFolder(Json const& body, ResolveId const& resolveId);
    void handleGetMarkerAtTime(Json const& body, ResolveId const& resolveId);
    void handleOpenURL(Json const& body, ResolveId const& resolveId);
    void handleIsFCPRunning(Json const& body, ResolveId const& resolveId);
    void handleUnknown(Json const& body, ResolveId const& resolveId);

    template <typename T>
    using Operation = std::function<void(ContainerBridge& bridge, Completion<T> done)>;

    // Answers false at once without a bridge; otherwise starts `operation` and answers with its outcome,
    // later. Until then handler and bridge are kept alive, so that the answer is sent though the panel has
    // let go.
    template <typename T>
    void handleAsync(ResolveId const& resolveId, char const* label, Operation<T> const& operation);

    // Starts `operation` inside this call. `done` runs after it has returned, never inside.
    template <typename T>
    void start(std::shared_ptr<ContainerBridge> const& bridge, char const* label,
               Operation<T> const& operation, std::function<void(Outcome<T> const&)> done);

    // Answers one request, when the page named it. The value travels as JSON text of its own ("null" for none
    // and for what cannot be written), so that the page parses it a second time.
    void resolve(ResolveId const& resolveId, std::optional<Json> const& value);

    // The single way into the page. What cannot be written, or has no page to go to, is dropped silently.
    // `event` is a literal: the script's end may be heard of when this object is gone.
    void sendToJS(char const* event, Json const& data);

    std::weak_ptr<WebView> webView;
    std::shared_ptr<ProExtensionAPI> const proExtension;
    std::shared_ptr<ContainerBridge> containerBridge;

    // These two are kept unused on purpose: the page matches replies to its requests, not the handler.
    [[maybe_unused]] std::unordered_map<std::string, std::function<void(std::optional<Json> const&)>>
        resolveCallbacks;
    [[maybe_unused]] std::int64_t resolveIdCounter = 0;

    double previousPlayheadTime = -1.0; // seconds; any negative value means that none is known
    double const jumpThreshold = 0.6; // seconds; above the marker tolerance on purpose

    MainLoop& mainLoop;
    std::shared_ptr<HostNotificationQueue> const hostNotifications;
};

} // namespace fcp
