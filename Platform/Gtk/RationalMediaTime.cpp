#include "Platform/Gtk/RationalMediaTime.h"

#include "FcpExtension/ProExtensionHost.h"

#include <cmath>
#include <limits>

namespace fcp {

namespace {

constexpr auto notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr auto infinity = std::numeric_limits<double>::infinity();

// 2^63, the first double above every value; its negative is the lowest value itself.
constexpr double valueEnd = 9223372036854775808.0;

std::int64_t saturated(double ticks) {
    if (ticks >= valueEnd)
        return std::numeric_limits<std::int64_t>::max();
    if (ticks < -valueEnd)
        return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(ticks);
}

} // namespace

double RationalMediaTime::seconds(CMTime time) const {
    if (!(time.flags & CMTime::Valid) || (time.flags & CMTime::Indefinite))
        return notANumber;
    if (time.flags & CMTime::PositiveInfinity)
        return infinity;
    if (time.flags & CMTime::NegativeInfinity)
        return -infinity;
    if (time.timescale == 0)
        return notANumber;
    return static_cast<double>(time.value) / time.timescale;
}

CMTime RationalMediaTime::makeWithSeconds(double seconds, std::int32_t preferredTimescale) const {
    CMTime time{.value = 0, .timescale = preferredTimescale};
    if (std::isnan(seconds) || preferredTimescale <= 0)
        return time;
    time.flags = CMTime::Valid;
    if (std::isinf(seconds)) {
        time.flags |= seconds > 0 ? CMTime::PositiveInfinity : CMTime::NegativeInfinity;
        return time;
    }
    time.value = saturated(seconds * preferredTimescale);
    if (this->seconds(time) != seconds)
        time.flags |= CMTime::HasBeenRounded;
    return time;
}

} // namespace fcp
