#include "Workbench/HostEditor/Playback.h"

#include "Workbench/HostEditor/Sequence.h"

#include <mlt++/Mlt.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <utility>

namespace workbench {

namespace {

constexpr std::chrono::seconds RestPatience{2}; // also where the engine never got going

void configure(Mlt::Consumer& consumer) {
    consumer.set("real_time", 1);
    consumer.set("buffer", 25);
    consumer.set("prefill", 1);
    consumer.set("rescale", "none");
    consumer.set("terminate_on_pause", 0);
    consumer.set("scrub_audio", 1);
    consumer.set("mlt_image_format", "yuv420p");
    if (!hasSoundDevice())
        consumer.set("audio_driver", "dummy");
}

// What the picture is meant to look like, from what the engine delivered.
double aspectOf(Mlt::Frame& frame, PixelSize size, double ofSequence) {
    auto const ofPixel = frame.get_double("aspect_ratio");
    return ofPixel > 0 ? ofPixel * size.width / size.height : ofSequence;
}

} // namespace

bool hasSoundDevice() {
    std::error_code error;
    if (std::filesystem::exists("/dev/snd", error) || std::getenv("PULSE_SERVER"))
        return true;
    auto const* const runtime = std::getenv("XDG_RUNTIME_DIR");
    if (!runtime)
        return false;
    std::filesystem::path const folder = runtime;
    return std::filesystem::exists(folder / "pulse/native", error) ||
           std::filesystem::exists(folder / "pipewire-0", error);
}

Playback::Playback(Sequence& ofSequence, Deliver deliverTo)
    : sequence(ofSequence)
    , deliver(std::move(deliverTo))
    , consumer(std::make_unique<Mlt::Consumer>(sequence.profile(), "sdl2_audio")) {
    if (!consumer->is_valid())
        return;
    configure(*consumer);
    consumer->connect(sequence.producer());
    mlt_listener const listener = [](mlt_properties, void* self, mlt_event_data data) {
        auto frame = Mlt::EventData{data}.to_frame();
        static_cast<Playback*>(self)->handOver(frame);
    };
    showing.reset(consumer->listen("consumer-frame-show", this, listener));
}

Playback::~Playback() {
    if (hasRun)
        comeToRest();
    // Before the event goes: a thread of the engine may be about to fire it.
    if (consumer->is_valid())
        consumer->stop();
}

// The engine lets go of a running frame twice when it is stopped between queueing it and looking for the next
// one, and then reads freed memory. Of frames without speed none is queued.
void Playback::comeToRest() {
    sequence.producer().set_speed(0);
    consumer->purge();
    {
        // What was on its way before the purge does not count.
        std::lock_guard const lock{resting};
        rests = false;
    }
    consumer->set("refresh", 1); // unlocked: the engine hands frames over under the lock that this takes
    std::unique_lock lock{resting};
    rested.wait_for(lock, RestPatience, [this] { return rests; });
}

bool Playback::start() {
    if (!consumer->is_valid())
        return false;
    if (consumer->start() == 0)
        return true;
    // The sound system was there and does not work.
    consumer->set("audio_driver", "dummy");
    return consumer->start() == 0;
}

void Playback::seek(std::int64_t frame) {
    sequence.producer().seek(static_cast<int>(frame));
    consumer->purge();
    consumer->set("refresh", 1);
}

void Playback::setSpeed(double speed) {
    hasRun = hasRun || speed != 0;
    sequence.producer().set_speed(speed);
    consumer->set("refresh", 1);
}

double Playback::speed() const {
    return sequence.producer().get_speed();
}

int Playback::dropped() const {
    return consumer->get_int("drop_count");
}

void Playback::setPictureLimits(PixelSize size, int height) {
    std::lock_guard const lock{converting};
    area = size;
    heightLimit = height;
}

void Playback::handOver(Mlt::Frame& frame) {
    if (!frame.is_valid())
        return;
    deliver({frame.get_position(), sequence.facts().hasPicture ? pictureOf(frame) : Picture{}});
    if (frame.get_double("_speed") != 0)
        return;
    std::lock_guard const lock{resting};
    rests = true;
    rested.notify_all();
}

Picture Playback::pictureOf(Mlt::Frame& frame) {
    auto format = mlt_image_yuv420p;
    PixelSize size{sequence.profile().width(), sequence.profile().height()};
    auto const* const data = frame.get_image(format, size.width, size.height);
    if (!data || format != mlt_image_yuv420p || size.width <= 0 || size.height <= 0)
        return {};
    auto const aspect = aspectOf(frame, size, sequence.facts().displayAspect);
    // Where nothing converts, a picture keeps the colours of its file, not those of the sequence.
    auto const ofFrame = frame.get_int("colorspace");
    auto const colours = ofFrame > 0 ? ofFrame : sequence.profile().colorspace();
    PlanarImage const image{data, size, colours, frame.get_int("full_range") != 0};
    std::lock_guard const lock{converting};
    auto const limit = std::min(heightLimit, size.height);
    return converter.convert(image, previewSize(aspect, area, limit), aspect);
}

} // namespace workbench
