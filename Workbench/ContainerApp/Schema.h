#pragma once

#include <span>

namespace workbench {

class Database;

// The steps that build the store: step i brings a database of version i to version i + 1. A step that has
// shipped is never edited; a change is a further step.
[[nodiscard]] std::span<char const* const> schemaSteps();

// Makes `database` ready for use: refuses, without having written a byte, what another program or a newer
// version of this one made, then runs the steps that are missing, each whole or not at all. Throws
// DatabaseError.
void prepareSchema(Database& database, std::span<char const* const> steps = schemaSteps());

} // namespace workbench
