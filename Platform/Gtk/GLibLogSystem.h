#pragma once

#include "FcpExtension/LogSystemOf.h"
#include "Platform/Gtk/GLibLog.h"

namespace fcp {

using GLibLogSystem = LogSystemOf<GLibLog>;

} // namespace fcp
