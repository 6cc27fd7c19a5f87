#pragma once

#include "Workbench/HostEditor/EngineTypes.h"
#include "Workbench/HostEditor/Picture.h"
#include "Workbench/HostEditor/PictureConverter.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>

namespace workbench {

class Sequence;

// A frame that the engine has put out: its picture and its place in the sequence.
struct ShownFrame {
    std::int64_t frame = 0;
    Picture picture; // none where the sequence has sound alone
};

// The engine at work on one sequence: its clock, its sound, its pictures. Main thread, except where said.
class Playback final {
public:
    // Called on threads of the engine. It must not wait for the main thread: stopping joins those threads
    // there.
    using Deliver = std::function<void(ShownFrame)>;

    // The sequence outlives the playback.
    Playback(Sequence& ofSequence, Deliver deliverTo);
    ~Playback(); // waits until the engine rests; nothing is delivered afterwards
    Playback(Playback const&) = delete;
    Playback& operator=(Playback const&) = delete;

    // False when the engine has no way to keep time.
    [[nodiscard]] bool start();

    // Drops what is on its way and puts out this frame.
    void seek(std::int64_t frame);

    void setSpeed(double speed);
    [[nodiscard]] double speed() const;

    // Frames that the engine has left out because they would have come too late.
    [[nodiscard]] int dropped() const;

    // Pictures from the next one on are made for this area, and no higher than the limit.
    void setPictureLimits(PixelSize size, int height);

private:
    void comeToRest();
    void handOver(Mlt::Frame& frame); // on the engine's threads
    [[nodiscard]] Picture pictureOf(Mlt::Frame& frame);

    Sequence& sequence;
    Deliver deliver;
    std::mutex converting; // guards the next three: a refresh runs on another thread than playing
    PictureConverter converter;
    PixelSize area{960, 540};
    int heightLimit = 540;
    bool hasRun = false;
    std::mutex resting; // guards the next one
    bool rests = false; // a frame without speed has been put out
    std::condition_variable rested;
    std::unique_ptr<Mlt::Consumer> consumer;
    std::unique_ptr<Mlt::Event> showing;
};

// Whether this machine offers any way to be heard. Without one the engine's sound library would print a page
// of complaints before it gives up.
[[nodiscard]] bool hasSoundDevice();

} // namespace workbench
