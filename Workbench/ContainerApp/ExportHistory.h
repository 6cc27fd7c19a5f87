#pragma once

#include "Workbench/ContainerApp/Statement.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

enum class ExportState { Running, Done, Cancelled, Failed };

struct ExportRecord {
    std::int64_t id = 0;
    std::string path;
    ExportState state = ExportState::Running;
    std::string detail; // of a failure
    std::string startedAt; // UTC, ISO 8601
};

// Every export that was ever started, and what became of it. Throws DatabaseError.
class ExportHistory {
public:
    // An export that a killed process left running is put down as failed.
    explicit ExportHistory(Database& database);

    // Returns the export's number.
    [[nodiscard]] std::int64_t begin(std::optional<std::int64_t> sequence, std::string const& format);
    void finish(std::int64_t id, ExportState state, std::string const& path, std::string const& detail);

    // The newest first.
    [[nodiscard]] std::vector<ExportRecord> newest(int count);

private:
    Statement insert;
    Statement update;
    Statement read;
};

} // namespace workbench
