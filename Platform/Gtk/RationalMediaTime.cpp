#include "Platform/Gtk/RationalMediaTime.h"

#include "FcpExtension/ProExtensionHost.h"

#include <cmath>
#include <limits>

namespace fcp {

namespace {

constexpr auto notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr auto infinity = std::numeric_limits<double>::infinity();

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
    time.value = static_cast<std::int64_t>(seconds * preferredTimescale);
    if (this->seconds(time) != seconds)
        time.flags |= CMTime::HasBeenRounded;
    return time;
}

} // namespace fcp
