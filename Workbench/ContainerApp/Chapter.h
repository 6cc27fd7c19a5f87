#pragma once

#include "Workbench/ContainerApp/Timeline.h"

#include <cstdint>
#include <string>
#include <vector>

namespace workbench {

// A part of a sequence, in frames; `end` is the first one behind it.
struct Chapter {
    std::int64_t begin = 0;
    std::int64_t end = 0;
    std::vector<std::string> remarks;
};

// The comments as chapters, which never overlap: a range ends where the next comment begins, if not before,
// and a moment lasts until then, the last one to the end of the sequence.
[[nodiscard]] std::vector<Chapter> chaptersOf(Timeline timeline);

} // namespace workbench
