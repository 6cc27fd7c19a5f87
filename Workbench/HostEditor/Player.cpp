#include "Workbench/HostEditor/Player.h"

#include "Workbench/HostEditor/Sequence.h"

#include <glibmm/main.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace workbench {

namespace {

constexpr unsigned WatchMilliseconds = 100;
constexpr std::int64_t EndSilence = 300'000; // microseconds without a frame after the engine has stopped
constexpr std::int64_t JumpPatience = 2'000'000; // microseconds until a jump is asked for again
constexpr std::int64_t SkippedAtMost = 60; // frames that the engine may leave out after a jump

} // namespace

Player::Player() {
    arrived.connect([this] { take(); });
}

Player::~Player() {
    watching.disconnect();
    close();
}

bool Player::open(Sequence& chosen) {
    close();
    sequence = &chosen;
    displayed = std::clamp<std::int64_t>(chosen.position(), 0, last());
    playback = std::make_unique<Playback>(chosen, [this](ShownFrame frame) { put(std::move(frame)); });
    applyLimits();
    playback->setSpeed(0);
    send(displayed);
    if (playback->start())
        return true;
    close();
    return false;
}

void Player::close() {
    if (sequence)
        sequence->setPosition(displayed);
    playback.reset();
    sequence = nullptr;
    underWay.reset();
    next.reset();
    displayed = 0;
    {
        std::lock_guard const lock{exchange};
        newest.reset();
    }
    setPlaying(false);
}

void Player::play() {
    if (!playback || playing)
        return;
    auto const from = target() >= last() ? 0 : target();
    setPlaying(true);
    next.reset();
    // The jump comes first: at the end the engine takes its speed back at once.
    if (from != displayed || underWay)
        send(from);
    playback->setSpeed(1);
    lastSign = g_get_monotonic_time();
    ensureWatching();
}

void Player::pause() {
    if (playing)
        pauseAt(target());
}

void Player::pauseAt(std::int64_t frame) {
    if (!playing) {
        seek(frame);
        return;
    }
    setPlaying(false);
    playback->setSpeed(0);
    // The engine has read ahead of the screen: without going back the picture would run on.
    next.reset();
    send(std::clamp<std::int64_t>(frame, 0, last()));
    targetChanged.emit();
}

void Player::seek(std::int64_t frame) {
    if (!playback)
        return;
    auto const wanted = std::clamp<std::int64_t>(frame, 0, last());
    if (underWay)
        next = wanted;
    else if (playing || wanted != displayed)
        send(wanted);
    targetChanged.emit();
}

std::int64_t Player::target() const {
    return next.value_or(underWay.value_or(displayed));
}

void Player::setArea(PixelSize size) {
    if (size == area || size.width <= 0 || size.height <= 0)
        return;
    area = size;
    if (!playback)
        return;
    applyLimits();
    if (!playing && !underWay)
        send(displayed);
}

void Player::put(ShownFrame frame) {
    std::lock_guard const lock{exchange};
    auto const isWaiting = newest.has_value();
    newest = std::move(frame);
    // One wake-up is under way at most: a stalled main loop must not fill its pipe and then stall the engine.
    if (!isWaiting)
        arrived.emit();
}

void Player::take() {
    std::optional<ShownFrame> frame;
    {
        std::lock_guard const lock{exchange};
        frame = std::exchange(newest, std::nullopt);
    }
    if (!frame || !playback || !isExpected(frame->frame))
        return;
    lastSign = g_get_monotonic_time();
    underWay.reset();
    displayed = frame->frame;
    if (auto const further = std::exchange(next, std::nullopt))
        send(*further);
    shown.emit(*frame);
}

// Frames that were on their way when a jump was asked for still come out after it.
bool Player::isExpected(std::int64_t frame) const {
    auto const wanted = underWay.value_or(displayed);
    if (!playing)
        return frame == wanted;
    return !underWay || (frame >= wanted && frame <= wanted + SkippedAtMost);
}

void Player::send(std::int64_t frame) {
    underWay = frame;
    lastSign = g_get_monotonic_time();
    ensureWatching();
    playback->seek(frame);
}

void Player::ensureWatching() {
    if (!watching.connected())
        watching = Glib::signal_timeout().connect([this] { return watch(); }, WatchMilliseconds);
}

bool Player::watch() {
    if (!playback || (!playing && !underWay))
        return false;
    auto const silence = g_get_monotonic_time() - lastSign;
    if (underWay) {
        if (silence > JumpPatience)
            send(*underWay);
        return true;
    }
    // At the end the engine stops by itself. On a busy machine it may have left out the last frame.
    if (playback->speed() == 0 && (displayed >= last() || silence > EndSilence)) {
        setPlaying(false);
        send(last());
    }
    return true;
}

void Player::setPlaying(bool plays) {
    if (std::exchange(playing, plays) == plays)
        return;
    if (playback)
        applyLimits();
    playingChanged.emit();
}

void Player::applyLimits() {
    auto const limit = playing ? playingHeightLimit(sequence->facts().rate) : std::numeric_limits<int>::max();
    playback->setPictureLimits(area, limit);
}

std::int64_t Player::last() const {
    return sequence ? sequence->lastFrame() : 0;
}

} // namespace workbench
