#pragma once

#include "Workbench/HostEditor/Playback.h"

#include <glibmm/dispatcher.h>
#include <sigc++/sigc++.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

namespace workbench {

class Sequence;

// Plays one sequence at a time and moves its playhead. Lives on the main thread and calls back there; needs a
// running default main loop. Of two frames that the engine puts out together the second waits for its turn,
// and what the loop is too slow for is left out. While one jump is under way only the last of the further
// ones is kept.
class Player final {
public:
    Player();
    ~Player();
    Player(Player const&) = delete;
    Player& operator=(Player const&) = delete;

    // Puts the sequence on, paused where it was left. It outlives its stay. False: the engine cannot play
    // here.
    bool open(Sequence& chosen);
    void close();

    // At this speed from where the playhead is, from the beginning when it is at the end. Below 0 it goes
    // backwards, and stops on the first frame.
    void play(double speed = 1);
    void pause();
    void pauseAt(std::int64_t frame); // also moves the playhead of a player that is paused already

    // Clamped to the sequence; nothing happens without one.
    void seek(std::int64_t frame);

    [[nodiscard]] bool isPlaying() const { return pace != 0; }

    // 0 while it is paused.
    [[nodiscard]] double speed() const { return pace; }

    // The frame that is on the screen, and the one that is going to be.
    [[nodiscard]] std::int64_t position() const { return displayed; }

    [[nodiscard]] std::int64_t target() const;

    // Frames that the engine has left out since the sequence was put on.
    [[nodiscard]] int dropped() const { return playback ? playback->dropped() : 0; }

    // The room for the picture, in pixels of the screen.
    void setArea(PixelSize size);

    sigc::signal<void(ShownFrame const&)>& signalShown() { return shown; }

    sigc::signal<void()>& signalTargetChanged() { return targetChanged; }

    // It plays, pauses, or goes at another speed.
    sigc::signal<void()>& signalPlayingChanged() { return playingChanged; }

private:
    void put(ShownFrame frame); // on the engine's threads
    void take();
    void takeIn(std::int64_t microseconds);
    [[nodiscard]] std::int64_t spacing() const; // microseconds between two frames at least, while it plays
    [[nodiscard]] bool isExpected(std::int64_t frame) const;
    void send(std::int64_t frame);
    void ensureWatching();
    bool watch(); // false: there is nothing to watch
    void setPace(double speed);
    void stopAt(std::int64_t frame);
    void applyLimits();
    [[nodiscard]] std::int64_t last() const;

    std::mutex exchange; // guards `newest`
    std::optional<ShownFrame> newest;
    Glib::Dispatcher arrived;
    sigc::connection taking; // while a frame waits for its turn
    std::int64_t shownAt = 0; // monotonic time of the last frame, in microseconds

    Sequence* sequence = nullptr;
    std::unique_ptr<Playback> playback;
    std::int64_t displayed = 0;
    std::optional<std::int64_t> underWay; // the jump that the engine works on
    std::optional<std::int64_t> next; // the one that follows it
    double pace = 0;
    std::int64_t start = 0; // where the last jump went, or play began
    PixelSize area{960, 540};
    std::int64_t lastSign = 0; // monotonic time of the last frame or command, in microseconds
    sigc::connection watching; // runs while the engine owes a frame

    sigc::signal<void(ShownFrame const&)> shown;
    sigc::signal<void()> targetChanged;
    sigc::signal<void()> playingChanged;
};

} // namespace workbench
