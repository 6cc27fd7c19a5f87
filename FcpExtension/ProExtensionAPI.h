#pragma once

#include "FcpExtension/ProExtensionHost.h"
#include "FcpExtension/PublishedCallback.h"
#include "Ports/Json.h"

#include <functional>
#include <memory>
#include <optional>

namespace fcp {

class HostRuntime;
class MediaTime;

// The panel's only contact with the host editor: reads the playhead, describes the active sequence, moves the
// playhead, and turns the host's timeline notifications into two callbacks. Silent: what is missing on the
// host's side becomes a fixed default. The host is asked anew each time; nothing is cached.
//
// Queries run on the caller's thread. The callbacks run on the thread that the host notifies on, inside the
// notification; hopping is their owner's business.
class ProExtensionAPI final : public std::enable_shared_from_this<ProExtensionAPI> {
public:
    // Fetches the host and registers with the timeline that it has at this moment. Without one the panel
    // stays unregistered for good. Main thread.
    [[nodiscard]] static std::shared_ptr<ProExtensionAPI> create(HostRuntime& hostRuntime,
                                                                 MediaTime const& mediaTime);

    // Unregisters from the timeline that the host has then.
    ~ProExtensionAPI();

    ProExtensionAPI(ProExtensionAPI const&) = delete;
    ProExtensionAPI& operator=(ProExtensionAPI const&) = delete;

    // Each replaces the earlier callback. Main thread; a notification may arrive on another one meanwhile.
    void onPlayheadChanged(std::function<void(double seconds)> callback);
    void onSequenceChanged(std::function<void(Json const& sequenceInfo)> callback);

    // 0.0 without a timeline. Whatever else the host says is passed on, not-a-number included.
    [[nodiscard]] double getPlayheadSeconds() const;

    // Nothing without a timeline.
    void seekTo(double seconds);

    // The six keys "name", "duration", "frameRate", "width", "height", "startTimecode"; none without a
    // timeline or an active sequence.
    [[nodiscard]] std::optional<Json> getSequenceInfo() const;

private:
    class ProExtensionObserver;

    ProExtensionAPI(std::shared_ptr<FCPXHost> fetchedHost, MediaTime const& mediaTimeArithmetic);

    void notifyPlayheadChanged();
    void notifySequenceChanged();

    // A message to a missing host yields nothing, as it does under the host's own object runtime.
    [[nodiscard]] std::shared_ptr<FCPXTimeline> timeline() const;
    [[nodiscard]] double frameRate(FCPXSequence const& sequence) const;

    std::shared_ptr<FCPXHost> const host; // may be null
    PublishedCallback<double> playheadCallback;
    PublishedCallback<Json const&> sequenceChangedCallback;
    std::shared_ptr<FCPXTimelineObserver> timelineObserver;

    MediaTime const& mediaTime;
};

} // namespace fcp
