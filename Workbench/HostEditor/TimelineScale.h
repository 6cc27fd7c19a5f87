#pragma once

#include "Workbench/HostEditor/TimeAxis.h"

#include <cstdint>

namespace workbench {

// Which part of a sequence the timeline shows: all of it, or a stretch at a larger scale. Lengths are pixels
// of the room that there is. Pure arithmetic.
class TimelineScale final {
public:
    static constexpr double MostPixels = 48; // for a frame

    // The magnification stays, as far as the sequence is long enough for it; the stretch begins anew.
    void setSequence(std::int64_t frames, FrameRate frameRate);
    void setRoom(double pixels);

    // By this factor, so that what lies at `place` pixels from the left stays there.
    void magnify(double factor, double place);
    void setMagnification(double wanted); // 1 shows all
    void scrollBy(double pixels);
    void scrollTo(double pixels);

    // Moves the stretch only when the frame lies outside of it, by about a page; false: it did not.
    bool reveal(std::int64_t frame);

    [[nodiscard]] double magnification() const { return times; }

    // Of the sequence at this scale, and what of it lies left of the stretch.
    [[nodiscard]] double total() const { return room * times; }

    [[nodiscard]] double offset() const { return hidden; }

    [[nodiscard]] double page() const { return room; }

    // The frames' places when the room begins at `left`.
    [[nodiscard]] TimeAxis axis(double left) const;

private:
    [[nodiscard]] double largest() const;

    std::int64_t length = 1;
    FrameRate rate;
    double room = 1;
    double times = 1;
    double hidden = 0;
};

} // namespace workbench
