#include "Workbench/ContainerApp/ExportHistory.h"

#include <array>

namespace workbench {

namespace {

constexpr std::array stateNames{"running", "done", "cancelled", "failed"};

std::string nameOf(ExportState state) {
    return stateNames.at(static_cast<std::size_t>(state));
}

ExportState stateNamed(std::string const& name) {
    auto state = std::size_t{0};
    while (name != stateNames.at(state))
        ++state;
    return static_cast<ExportState>(state);
}

} // namespace

ExportHistory::ExportHistory(Database& database)
    : insert{database, "INSERT INTO exports(sequence_id, format, state, started_at) "
                       "VALUES(?1, ?2, 'running', strftime('%Y-%m-%dT%H:%M:%SZ', 'now')) RETURNING id"}
    , update{database, "UPDATE exports SET state = ?2, path = ?3, detail = ?4, finished_at = "
                       "strftime('%Y-%m-%dT%H:%M:%SZ', 'now') "
                       "WHERE id = ?1"}
    , read{database, "SELECT id, path, state, detail, started_at FROM exports ORDER BY id DESC LIMIT ?1"} {
    database.execute(
        "UPDATE exports SET state = 'failed', detail = 'the program was ended before it was done', "
        "finished_at = strftime('%Y-%m-%dT%H:%M:%SZ', 'now') WHERE state = 'running'");
}

std::int64_t ExportHistory::begin(std::optional<std::int64_t> sequence, std::string const& format) {
    return insert.number(sequence, format);
}

void ExportHistory::finish(std::int64_t id, ExportState state, std::string const& path,
                           std::string const& detail) {
    update.run(id, nameOf(state), path, detail);
}

std::vector<ExportRecord> ExportHistory::newest(int count) {
    auto records = std::vector<ExportRecord>{};
    auto rows = read.query(count);
    while (rows.next())
        records.push_back({.id = rows.integer(0),
                           .path = rows.text(1),
                           .state = stateNamed(rows.text(2)),
                           .detail = rows.text(3),
                           .startedAt = rows.text(4)});
    return records;
}

} // namespace workbench
