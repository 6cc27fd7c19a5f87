#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace fcp {

// What the conversions of every platform hold to where a value from outside enters.

// Levels of objects and arrays; what is nested deeper would exhaust the stack where values are copied and
// written.
inline constexpr int maximumNesting = 512;

// These outermost members take any number, because a page may well divide by zero on its way to a time.
// Elsewhere a number that is not finite reads as null.
inline constexpr std::array membersWithAnyNumber = {"seconds", "threshold"};

[[nodiscard]] constexpr bool takesAnyNumber(std::string_view member) {
    return std::ranges::find(membersWithAnyNumber, member) != membersWithAnyNumber.end();
}

} // namespace fcp
