#pragma once

#include "FcpExtension/LogSystemOf.h"
#include "Platform/Cocoa/CocoaLog.h"

namespace fcp {

using CocoaLogSystem = LogSystemOf<CocoaLog>;

} // namespace fcp
