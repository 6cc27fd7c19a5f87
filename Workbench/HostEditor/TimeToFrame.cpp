#include "Workbench/HostEditor/TimeToFrame.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace workbench {

namespace {

__extension__ using Wide = __int128;

constexpr std::int32_t UnitsPerSecond = 600;

bool isNumberOfSeconds(fcp::CMTime const& time) {
    using fcp::CMTime;
    auto const numberless = CMTime::PositiveInfinity | CMTime::NegativeInfinity | CMTime::Indefinite;
    return (time.flags & CMTime::Valid) != 0 && (time.flags & numberless) == 0 && time.timescale > 0;
}

Wide floorDivide(Wide dividend, Wide divisor) {
    auto const quotient = dividend / divisor;
    return dividend % divisor < 0 ? quotient - 1 : quotient;
}

} // namespace

std::optional<std::int64_t> frameAt(fcp::CMTime const& time, FrameRate rate, std::int64_t length) {
    if (length <= 0 || !isNumberOfSeconds(time))
        return {};
    // Whoever sends a time has rounded it to his timescale, often downwards: without the one tick of
    // tolerance half of all frames at the 1001 rates would come out one frame early.
    auto const frame =
        floorDivide((Wide{time.value} + 1) * rate.numerator, Wide{time.timescale} * rate.denominator);
    return static_cast<std::int64_t>(std::clamp<Wide>(frame, 0, length - 1));
}

fcp::CMTime timeOfFrame(std::int64_t frame, FrameRate rate) {
    return {.value = frame * rate.denominator, .timescale = rate.numerator, .flags = fcp::CMTime::Valid};
}

fcp::CMTime timeOfSeconds(double seconds) {
    if (!std::isfinite(seconds))
        return {};
    // 2^63 is a double, the largest int64 is not: the comparison keeps the conversion defined.
    auto const limit = std::ldexp(1.0, 63);
    auto const units = std::round(seconds * UnitsPerSecond);
    auto time = fcp::CMTime{.value = 0, .timescale = UnitsPerSecond, .flags = fcp::CMTime::Valid};
    if (units >= limit)
        time.value = std::numeric_limits<std::int64_t>::max();
    else if (units < -limit)
        time.value = std::numeric_limits<std::int64_t>::min();
    else
        time.value = static_cast<std::int64_t>(units);
    return time;
}

} // namespace workbench
