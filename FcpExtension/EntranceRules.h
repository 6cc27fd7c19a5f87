#pragma once

#include "Ports/Json.h"
#include "Ports/Url.h"

#include <array>
#include <optional>
#include <string>

namespace fcp {

// What the conversions of every platform hold to where a value from outside enters.

// Levels of objects and arrays; what is nested deeper would exhaust the stack where values are copied and
// written.
inline constexpr int maximumNesting = 512;

// These outermost members take any number, because a page may well divide by zero on its way to a time.
// Elsewhere a number that is not finite reads as null.
inline constexpr std::array membersWithAnyNumber = {"seconds", "threshold"};

enum class ObjectPlace { Outermost, Nested };

// Adds what was read of a member. What has no JSON form (none) is left out, and of equal names the first
// counts.
void addMember(Json& object, std::string const& name, std::optional<Json> value, ObjectPlace place);

// Adds what was read of an element. What has no JSON form (none) is null, so that the others keep their
// places.
void addElement(Json& array, std::optional<Json> value);

// Not with a NUL in it: parsers read up to there, and would take the rest for granted.
[[nodiscard]] bool mayBeAddress(std::string const& text);

// What was read of an address. Its text stays as it is given, and an empty host is none.
[[nodiscard]] Url readAddress(std::string text, std::string host);

} // namespace fcp
