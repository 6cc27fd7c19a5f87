#pragma once

#include <nlohmann/json.hpp>

namespace fcp {

// The JSON-like value that crosses every port: message bodies, event payloads, notification contents.
// Both platforms read and write it with the same code, so that a page cannot tell them apart.
using Json = nlohmann::json;

} // namespace fcp
