#pragma once

#include <nlohmann/json.hpp>

namespace workbench {

// What commands carry and what is kept of a comment as it came.
using Json = nlohmann::json;

} // namespace workbench
