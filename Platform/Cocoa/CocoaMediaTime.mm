#include "Platform/Cocoa/CocoaMediaTime.h"

#include "Platform/Cocoa/Conversions.h"

#include <algorithm>
#include <cmath>

namespace fcp {

namespace {

// The last double below 2^63, where the system would begin to halve the timescale.
constexpr double lastTick = 9223372036854774784.0;

} // namespace

double CocoaMediaTime::seconds(CMTime time) const {
    return CMTimeGetSeconds(makeMediaTime(time));
}

CMTime CocoaMediaTime::makeWithSeconds(double seconds, std::int32_t preferredTimescale) const {
    auto reachable = seconds;
    if (std::isfinite(seconds) && preferredTimescale > 0)
        reachable = std::clamp(seconds, -lastTick / preferredTimescale, lastTick / preferredTimescale);
    auto time = readMediaTime(CMTimeMakeWithSeconds(reachable, preferredTimescale));
    // Where the time is no number of ticks, the system may leave the timescale out.
    if (!std::isfinite(seconds))
        time.timescale = preferredTimescale;
    return time;
}

} // namespace fcp
