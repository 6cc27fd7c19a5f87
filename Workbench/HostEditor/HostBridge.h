#pragma once

#include "FcpExtension/ProExtensionHost.h"
#include "Workbench/HostEditor/SequenceFacts.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace workbench {

// The editor as the panel sees it. Questions are answered on any thread; a request to move the playhead is
// carried out on the main thread. The rest belongs to the main thread, too.
class HostBridge final : public fcp::FCPXHost {
public:
    // The thread on which observers are told. A host may choose; a second one shows that the panel bears it.
    enum class Delivery { MainThread, OwnThread };

    using Move = std::function<void(std::int64_t frame)>; // called on the main thread

    explicit HostBridge(Delivery delivery);
    ~HostBridge() override;
    HostBridge(HostBridge const&) = delete;
    HostBridge& operator=(HostBridge const&) = delete;

    void onMove(Move move);

    // Whether anybody observes the timeline; each change is told on the main thread.
    [[nodiscard]] bool isObserved() const;
    void onObserved(std::function<void()> changed);

    // Another sequence is active, or none, with its playhead at `frame`: observers hear of both changes.
    void setActive(std::optional<SequenceFacts> sequence, std::int64_t frame);

    // The playhead is on another frame.
    void setFrame(std::int64_t frame);

    // No observer is told anything afterwards, and nothing moves.
    void close();

    [[nodiscard]] std::shared_ptr<fcp::FCPXTimeline> timeline() const override;

private:
    class Timeline;
    class Messenger;

    void tell(void (fcp::FCPXTimelineObserver::*call)());

    std::shared_ptr<Timeline> line;
    std::unique_ptr<Messenger> messenger; // none: observers are told at once
    bool isClosed = false;
};

} // namespace workbench
