#include "FcpExtension/ProExtensionAPI.h"

#include "Ports/HostRuntime.h"
#include "Ports/MediaTime.h"

#include <algorithm>
#include <cmath>

namespace fcp {

namespace {

constexpr std::int32_t seekTimescale = 600;

// Further away a platform would make the ticks coarser, for the sake of the value's 63 bits.
constexpr double furthestSeek = 9223372036854774784.0 / seekTimescale; // the last number below 2^63
static_assert(furthestSeek * seekTimescale < 9223372036854775808.0);

// Always in ticks of a 600th, whatever the seconds.
CMTime seekTime(MediaTime const& mediaTime, double seconds) {
    if (std::isfinite(seconds))
        return mediaTime.makeWithSeconds(std::clamp(seconds, -furthestSeek, furthestSeek), seekTimescale);
    auto time = mediaTime.makeWithSeconds(seconds, seekTimescale);
    time.timescale = seekTimescale;
    return time;
}

} // namespace

// What the host holds. It refers back weakly, so that a notification which races with the panel's end finds
// either a live object or none.
class ProExtensionAPI::ProExtensionObserver final : public FCPXTimelineObserver {
public:
    explicit ProExtensionObserver(std::weak_ptr<ProExtensionAPI> owner)
        : api(std::move(owner)) {}

    void playheadTimeChanged() override {
        if (auto const strong = api.lock())
            strong->notifyPlayheadChanged();
    }

    void activeSequenceChanged() override {
        if (auto const strong = api.lock())
            strong->notifySequenceChanged();
    }

private:
    std::weak_ptr<ProExtensionAPI> const api;
};

std::shared_ptr<ProExtensionAPI> ProExtensionAPI::create(HostRuntime& hostRuntime,
                                                         MediaTime const& mediaTime) {
    std::shared_ptr<ProExtensionAPI> const api(
        new ProExtensionAPI(hostRuntime.proExtensionHostSingleton(), mediaTime));
    // Inside the constructor the weak reference would still be empty, and every notification silently lost.
    api->timelineObserver = std::make_shared<ProExtensionObserver>(api);
    if (auto const current = api->timeline())
        current->add(api->timelineObserver);
    return api;
}

ProExtensionAPI::ProExtensionAPI(std::shared_ptr<FCPXHost> fetchedHost, MediaTime const& mediaTimeArithmetic)
    : host(std::move(fetchedHost))
    , mediaTime(mediaTimeArithmetic) {}

ProExtensionAPI::~ProExtensionAPI() {
    if (!timelineObserver)
        return;
    // The current timeline, which need not be the one that the observer was added to, if it was added at all.
    if (auto const current = timeline())
        current->remove(timelineObserver);
}

void ProExtensionAPI::onPlayheadChanged(std::function<void(double seconds)> callback) {
    playheadCallback.install(std::move(callback));
}

void ProExtensionAPI::onSequenceChanged(std::function<void(Json const& sequenceInfo)> callback) {
    sequenceChangedCallback.install(std::move(callback));
}

double ProExtensionAPI::getPlayheadSeconds() const {
    auto const current = timeline();
    return current ? mediaTime.seconds(current->playheadTime()) : 0.0;
}

void ProExtensionAPI::seekTo(double seconds) {
    auto const time = seekTime(mediaTime, seconds);
    if (auto const current = timeline())
        current->movePlayheadTo(time);
}

std::optional<Json> ProExtensionAPI::getSequenceInfo() const {
    auto const current = timeline();
    auto const sequence = current ? current->activeSequence() : nullptr;
    if (!sequence)
        return std::nullopt;
    auto const duration = mediaTime.seconds(sequence->duration());
    auto const rate = frameRate(*sequence);
    Json info;
    info["name"] = sequence->name().value_or("");
    info["duration"] = duration;
    info["frameRate"] = rate;
    // The host offers no frame size, and its start time is deliberately not asked for: the page gets these
    // placeholders for every sequence.
    info["width"] = 0;
    info["height"] = 0;
    info["startTimecode"] = "00:00:00:00";
    return info;
}

void ProExtensionAPI::notifyPlayheadChanged() {
    auto const* const callback = playheadCallback.get();
    if (!callback)
        return;
    auto const current = timeline();
    if (!current)
        return; // no 0.0 here, unlike getPlayheadSeconds
    (*callback)(mediaTime.seconds(current->playheadTime()));
}

void ProExtensionAPI::notifySequenceChanged() {
    auto const* const callback = sequenceChangedCallback.get();
    if (!callback)
        return;
    if (auto const info = getSequenceInfo())
        (*callback)(*info);
}

std::shared_ptr<FCPXTimeline> ProExtensionAPI::timeline() const {
    return host ? host->timeline() : nullptr;
}

double ProExtensionAPI::frameRate(FCPXSequence const& sequence) const {
    auto const frameSeconds = mediaTime.seconds(sequence.frameDuration());
    // Strictly positive, so that zero, negative and not-a-number durations all give 0.
    auto const framesPerSecond = 0.0 < frameSeconds ? 1.0 / frameSeconds : 0.0;
    return std::round(framesPerSecond * 100.0) / 100.0;
}

} // namespace fcp
