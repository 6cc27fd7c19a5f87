#include "Workbench/HostEditor/PlayTally.h"

#include <cstdio>

namespace workbench {

std::string PlayTally::text(PlayCounts const& after) const {
    std::chrono::duration<double> const span = std::chrono::steady_clock::now() - start;
    char line[120];
    std::snprintf(line, sizeof line, "played %.2f s at %gx: %d pictures painted, %d dropped by the engine",
                  span.count(), pace, after.painted - first.painted, after.dropped - first.dropped);
    return line;
}

} // namespace workbench
