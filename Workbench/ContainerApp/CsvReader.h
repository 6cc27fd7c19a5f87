#pragma once

#include "Workbench/ContainerApp/ImportedComment.h"
#include "Workbench/ContainerApp/Timecode.h"

#include <optional>
#include <string_view>
#include <vector>

namespace workbench {

// Reads comments from comma-separated values, ours and those of other programs: the first line names the
// columns, in any order. A comment's time is what its first filled column says of "seconds", "frame" and
// "timecode"; the latter two need a frame count. `text` is UTF-8. Throws ImportError.
[[nodiscard]] std::vector<ImportedComment> readCsvComments(std::string_view text,
                                                           std::optional<FrameCount> const& count);

} // namespace workbench
