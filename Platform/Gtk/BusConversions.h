#pragma once

#include "Ports/Json.h"

#include <cstddef>
#include <optional>

struct sd_bus_message;

namespace fcp {

// A notification's user info on the bus: one a{sv}. Null travels as an empty signature, every array as av, an
// integer as x (t above the signed range), every other number as d. Any thread that owns the message.

// A message nested deeper than this, or of 64 MiB and more, makes the bus cut its sender off. A dictionary
// costs three levels, an array two, and the path with the highest sum counts, the outermost dictionary
// included.
inline constexpr int maximumPathCost = 64;

// Bytes of a message's body.
inline constexpr std::size_t maximumBodySize = std::size_t{16} * 1024 * 1024;

// Appends `userInfo`, an object, to an empty message and answers the size of the body. What the bus refuses
// in a text, keys included, is replaced by U+FFFD, and a key that thereby equals an earlier one is left out.
// None when `userInfo` is no object or a limit is exceeded: then the message must not be sent.
[[nodiscard]] std::optional<std::size_t> appendUserInfo(sd_bus_message& message, Json const& userInfo);

// Reads a message whose signature is exactly a{sv}; none for another signature, for a malformed body and for
// one with more values than a body of the maximum size can hold. A member of a type without a JSON form, or
// nested too deep, is left out; in an array it reads as null, so that the others keep their places. Of equal
// keys the first counts. A number that is not finite reads as null, except directly under "seconds" and
// "threshold".
[[nodiscard]] std::optional<Json> readUserInfo(sd_bus_message& message);

} // namespace fcp
