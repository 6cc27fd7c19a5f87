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
    taking.disconnect();
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
    setPace(0);
}

void Player::play(double speed) {
    auto const nowhereToGo = speed < 0 && target() == 0;
    if (!playback || speed == pace || nowhereToGo)
        return;
    auto const from = speed > 0 && target() >= last() ? 0 : target();
    auto const isTurning = isPlaying();
    // What the engine has read ahead was meant for the other speed.
    if (isTurning)
        playback->setSpeed(0);
    setPace(speed);
    next.reset();
    start = from;
    // The jump comes first: at the end the engine takes its speed back at once.
    if (from != displayed || underWay || isTurning)
        send(from);
    playback->setSpeed(speed);
    lastSign = g_get_monotonic_time();
    ensureWatching();
}

void Player::pause() {
    if (isPlaying())
        pauseAt(target());
}

void Player::pauseAt(std::int64_t frame) {
    if (!isPlaying()) {
        seek(frame);
        return;
    }
    stopAt(std::clamp<std::int64_t>(frame, 0, last()));
    targetChanged.emit();
}

void Player::stopAt(std::int64_t frame) {
    setPace(0);
    playback->setSpeed(0);
    // The engine has read ahead of the screen: without going back the picture would run on.
    next.reset();
    send(frame);
}

void Player::seek(std::int64_t frame) {
    if (!playback)
        return;
    auto const wanted = std::clamp<std::int64_t>(frame, 0, last());
    if (underWay)
        next = wanted;
    else if (isPlaying() || wanted != displayed)
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
    if (!isPlaying() && !underWay)
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
    taking.disconnect();
    auto const now = g_get_monotonic_time();
    if (auto const early = shownAt + spacing() - now; isPlaying() && early > 0) {
        takeIn(early);
        return;
    }
    std::optional<ShownFrame> frame;
    {
        std::lock_guard const lock{exchange};
        frame = std::exchange(newest, std::nullopt);
    }
    if (!frame || !playback || !isExpected(frame->frame))
        return;
    lastSign = shownAt = now;
    underWay.reset();
    displayed = frame->frame;
    if (auto const further = std::exchange(next, std::nullopt))
        send(*further);
    else if (pace < 0 && displayed == 0)
        stopAt(0); // the engine would stay there at full speed
    shown.emit(*frame);
}

void Player::takeIn(std::int64_t microseconds) {
    auto const turn = [this] {
        take();
        return false;
    };
    taking = Glib::signal_timeout().connect(turn, static_cast<unsigned>((microseconds + 999) / 1000));
}

// Above 30 frames in a second the engine puts out two at once and then none for as long: shown at once, every
// second one would never reach the screen. Less than a frame lasts, so that a late one is caught up with.
std::int64_t Player::spacing() const {
    if (!sequence)
        return 0;
    auto const rate = sequence->facts().rate;
    return std::int64_t{750'000} * rate.denominator / rate.numerator;
}

// Frames that were on their way when a jump was asked for still come out after it, and when play turned, too.
bool Player::isExpected(std::int64_t frame) const {
    if (!isPlaying())
        return frame == underWay.value_or(displayed);
    auto const ahead = static_cast<double>(frame - start) / pace; // in pictures, in the direction of play
    return ahead >= 0 && (!underWay || ahead <= SkippedAtMost);
}

void Player::send(std::int64_t frame) {
    underWay = start = frame;
    lastSign = g_get_monotonic_time();
    ensureWatching();
    playback->seek(frame);
}

void Player::ensureWatching() {
    if (!watching.connected())
        watching = Glib::signal_timeout().connect([this] { return watch(); }, WatchMilliseconds);
}

bool Player::watch() {
    if (!playback || (!isPlaying() && !underWay))
        return false;
    auto const silence = g_get_monotonic_time() - lastSign;
    if (underWay) {
        if (silence > JumpPatience)
            send(*underWay);
        return true;
    }
    // At the end the engine stops by itself. On a busy machine it may have left out the last frame.
    if (playback->speed() == 0 && (displayed >= last() || silence > EndSilence)) {
        setPace(0);
        send(last());
    }
    return true;
}

void Player::setPace(double speed) {
    if (std::exchange(pace, speed) == speed)
        return;
    if (playback)
        applyLimits();
    playingChanged.emit();
}

void Player::applyLimits() {
    auto const limit =
        isPlaying() ? playingHeightLimit(sequence->facts().rate) : std::numeric_limits<int>::max();
    playback->setPictureLimits(area, limit);
}

std::int64_t Player::last() const {
    return sequence ? sequence->lastFrame() : 0;
}

} // namespace workbench
