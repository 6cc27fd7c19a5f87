#include "FcpExtension/EntranceRules.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace fcp {

namespace {

bool isFinite(Json const& value) {
    return !value.is_number_float() || std::isfinite(value.get<double>());
}

bool takesAnyNumber(std::string const& member) {
    return std::ranges::find(membersWithAnyNumber, member) != membersWithAnyNumber.end();
}

} // namespace

void addMember(Json& object, std::string const& name, std::optional<Json> value, ObjectPlace place) {
    if (!value)
        return;
    bool const taken = isFinite(*value) || (place == ObjectPlace::Outermost && takesAnyNumber(name));
    object.emplace(name, taken ? *std::move(value) : Json());
}

void addElement(Json& array, std::optional<Json> value) {
    array.push_back(value && isFinite(*value) ? *std::move(value) : Json());
}

bool mayBeAddress(std::string const& text) {
    return text.find('\0') == std::string::npos;
}

Url readAddress(std::string text, std::string host) {
    if (host.empty())
        return {std::move(text), std::nullopt};
    return {std::move(text), std::move(host)};
}

} // namespace fcp
