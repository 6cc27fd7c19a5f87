#include "FcpExtension/JsonWriter.h"

#include <algorithm>
#include <cmath>

namespace fcp {

namespace {

// The library writes a non-finite number as null, which would hide it from the page.
bool isFinite(Json const& value) {
    if (value.is_number_float())
        return std::isfinite(value.get_ref<double const&>());
    return !value.is_structured() || std::ranges::all_of(value, isFinite);
}

} // namespace

std::optional<std::string> writeJson(Json const& value) {
    if (!isFinite(value))
        return std::nullopt;
    try {
        return value.dump();
    } catch (Json::exception const&) { // text that is not UTF-8
        return std::nullopt;
    }
}

} // namespace fcp
