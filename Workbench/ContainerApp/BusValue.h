#pragma once

#include "Workbench/ContainerApp/Json.h"

#include <optional>
#include <string>

struct sd_bus_message;

// The values of the bus and of JSON, each read as the other. Null travels as a signature with empty text,
// since the bus has no null. What is nested deeper than the bus allows never arrives.
namespace workbench {

// The dictionary (a{sv}) at which `message` stands; none when there is another type. Of a key that comes
// twice the first counts. A member that JSON cannot express (an object path, a structure, a file) is left
// out; in a list it stands as null, since its neighbours must keep their places.
[[nodiscard]] std::optional<Json> readDictionary(sd_bus_message* message);

// The variant at which `message` stands; none for one that JSON cannot express.
[[nodiscard]] std::optional<Json> readVariant(sd_bus_message* message);

// Appends `value` as a variant. Negative when the bus cannot carry it.
[[nodiscard]] int appendVariant(sd_bus_message* message, Json const& value);

// Appends one member of a dictionary (a{sv}) that is open.
[[nodiscard]] int appendMember(sd_bus_message* message, std::string const& key, Json const& value);

} // namespace workbench
