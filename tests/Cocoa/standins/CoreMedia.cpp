#include <CoreMedia/CoreMedia.h>

#include <cmath>
#include <limits>

namespace {

constexpr double valueEnd = 9223372036854775808.0; // 2^63

}

Float64 CMTimeGetSeconds(CMTime time) {
    if (!(time.flags & kCMTimeFlags_Valid) || (time.flags & kCMTimeFlags_Indefinite))
        return std::numeric_limits<double>::quiet_NaN();
    if (time.flags & kCMTimeFlags_PositiveInfinity)
        return std::numeric_limits<double>::infinity();
    if (time.flags & kCMTimeFlags_NegativeInfinity)
        return -std::numeric_limits<double>::infinity();
    return static_cast<double>(time.value) / time.timescale;
}

// Halves the timescale until the value fits.
CMTime CMTimeMakeWithSeconds(Float64 seconds, std::int32_t preferredTimescale) {
    if (std::isnan(seconds) || preferredTimescale <= 0)
        return {};
    if (std::isinf(seconds))
        return {0, 0,
                kCMTimeFlags_Valid |
                    (seconds > 0 ? kCMTimeFlags_PositiveInfinity : kCMTimeFlags_NegativeInfinity),
                0};
    auto timescale = preferredTimescale;
    while (timescale > 1 && std::abs(seconds * timescale) >= valueEnd)
        timescale /= 2;
    double const ticks = std::trunc(seconds * timescale);
    if (std::abs(ticks) >= valueEnd)
        return {0, 0,
                kCMTimeFlags_Valid |
                    (seconds > 0 ? kCMTimeFlags_PositiveInfinity : kCMTimeFlags_NegativeInfinity),
                0};
    CMTime time{static_cast<std::int64_t>(ticks), timescale, kCMTimeFlags_Valid, 0};
    if (timescale != preferredTimescale || ticks != seconds * timescale)
        time.flags |= kCMTimeFlags_HasBeenRounded;
    return time;
}
