#pragma once

#include <glibmm/variant.h>
#include <nlohmann/json_fwd.hpp>

namespace workbench {

// What a bus message holds, as JSON: dictionaries become objects, what stands for nothing (an empty
// signature) becomes null. What JSON has no form for becomes the library's own text of it.
[[nodiscard]] nlohmann::json jsonOf(Glib::VariantBase const& value);

} // namespace workbench
