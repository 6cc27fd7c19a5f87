#pragma once

#include <cstdint>

namespace fcp {

struct CMTime;

// The platform's arithmetic on media times. Any thread.
class MediaTime {
public:
    virtual ~MediaTime() = default;

    // Not a number for an invalid or indefinite time, an infinity for an infinite one.
    [[nodiscard]] virtual double seconds(CMTime time) const = 0;

    // `seconds` are within the range of a value in that timescale, infinite or no number: the latter two make
    // an infinite and an invalid time, from which the platform may leave the timescale out. How a value that
    // lies between two ticks is rounded is the platform's affair.
    [[nodiscard]] virtual CMTime makeWithSeconds(double seconds, std::int32_t preferredTimescale) const = 0;
};

} // namespace fcp
