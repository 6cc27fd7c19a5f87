#include "Platform/Cocoa/CocoaMediaTime.h"

#include "Platform/Cocoa/Conversions.h"

namespace fcp {

double CocoaMediaTime::seconds(CMTime time) const {
    return CMTimeGetSeconds(makeMediaTime(time));
}

CMTime CocoaMediaTime::makeWithSeconds(double seconds, std::int32_t preferredTimescale) const {
    return readMediaTime(CMTimeMakeWithSeconds(seconds, preferredTimescale));
}

} // namespace fcp
