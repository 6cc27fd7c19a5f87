#pragma once

#include "Ports/Json.h"

#include <optional>
#include <string>
#include <vector>

namespace fcp::test {

// What the conversions make of Objective-C values, which are made by the name of a row.
[[nodiscard]] std::vector<std::string> valueNames();
[[nodiscard]] std::optional<Json> bodyOf(std::string const& name);

// None too for a value that is no dictionary.
[[nodiscard]] std::optional<Json> userInfoOf(std::string const& name);

enum class Nesting { Dictionaries, Arrays, Both };

// Of an outermost dictionary with so many levels, itself included.
[[nodiscard]] std::optional<Json> nestedBody(Nesting nesting, int levels);
[[nodiscard]] std::optional<Json> nestedUserInfo(Nesting nesting, int levels);

// Of a dictionary that holds itself.
[[nodiscard]] std::optional<Json> cyclicBody();

// There and back.
[[nodiscard]] std::string throughString(std::string const& text);
[[nodiscard]] std::optional<Json> throughUserInfo(Json const& userInfo);

// From UTF-16.
[[nodiscard]] std::string fromUnits(std::u16string const& units);
[[nodiscard]] bool readsNilAsNone();

} // namespace fcp::test
