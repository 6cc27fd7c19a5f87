#pragma once

#include "Workbench/ContainerApp/ImportedComment.h"
#include "Workbench/ContainerApp/Timecode.h"

#include <string_view>
#include <vector>

namespace workbench {

// Reads guides as Kdenlive exports them: a JSON array of objects. Each is a comment without an identifier;
// the colour is that of its category, which the first one, given to guides without a choice, does not set.
// `text` is UTF-8. Throws ImportError.
[[nodiscard]] std::vector<ImportedComment> readKdenliveGuides(std::string_view text, FrameRate rate);

} // namespace workbench
