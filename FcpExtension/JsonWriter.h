#pragma once

#include "Ports/Json.h"

#include <optional>
#include <string>

namespace fcp {

// The compact JSON text of `value`; a top-level scalar is written as a fragment (`true`, `12.5`, `"a"`).
// None ("rejected") when the value holds a non-finite number or text that is not UTF-8, at any depth.
// `value` must nest less than about ten thousand levels; what enters the panel is cut at 512.
[[nodiscard]] std::optional<std::string> writeJson(Json const& value);

} // namespace fcp
