#pragma once

#include "Doubles/Journal.h"

#include <string>
#include <vector>

namespace fcp::test {

struct LoggedLine {
    std::string subsystem; // empty for the default log
    std::string category;
    int type = 0; // as the unified log numbers them
    std::string text; // "<private>" where a value was not marked public

    bool operator==(LoggedLine const&) const = default;
};

// What was written to the unified log since the last call. Any thread.
[[nodiscard]] std::vector<LoggedLine> takeLoggedLines();

// Notes lines from here on in a journal too, as "LEVEL: text", those of the default log as "default LEVEL:
// text"; null ends it.
void noteLoggedLines(Journal* linesJournal);

} // namespace fcp::test
