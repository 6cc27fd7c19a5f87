#include "Workbench/ContainerApp/Schema.h"

#include "Workbench/ContainerApp/Statement.h"

#include <array>
#include <cstdint>
#include <string>

namespace workbench {

namespace {

// "ZLVX": how the `file` command and we ourselves know our own databases.
constexpr std::int64_t applicationId = 0x5A4C5658;

// `longest_s` and `next_position` are kept beside the list so that a write and a marker lookup never walk it.
// The time index holds all that the choice of a marker looks at; replies are no markers and stay out of it.
constexpr char const* firstStep = R"(
CREATE TABLE sequences(
    id INTEGER PRIMARY KEY,
    key TEXT NOT NULL UNIQUE CHECK(key <> ''),
    name TEXT NOT NULL DEFAULT '',
    rate_num INTEGER NOT NULL DEFAULT 0 CHECK(rate_num >= 0),
    rate_den INTEGER NOT NULL DEFAULT 1 CHECK(rate_den > 0),
    duration_frames INTEGER NOT NULL DEFAULT 0,
    start_frame INTEGER NOT NULL DEFAULT 0,
    drop_frame INTEGER NOT NULL DEFAULT 0 CHECK(drop_frame IN (0, 1)),
    media_uri TEXT,
    revision INTEGER NOT NULL DEFAULT 0,
    longest_s REAL NOT NULL DEFAULT 0,
    next_position INTEGER NOT NULL DEFAULT 0
) STRICT;
CREATE TABLE comments(
    sequence_id INTEGER NOT NULL REFERENCES sequences(id) ON DELETE CASCADE,
    id TEXT NOT NULL CHECK(id <> ''),
    parent_id TEXT,
    author TEXT NOT NULL DEFAULT '',
    body TEXT NOT NULL DEFAULT '',
    start_s REAL NOT NULL CHECK(start_s >= 0),
    duration_s REAL NOT NULL DEFAULT 0 CHECK(duration_s >= 0),
    colour TEXT,
    resolved INTEGER NOT NULL DEFAULT 0 CHECK(resolved IN (0, 1)),
    created_at TEXT NOT NULL,
    updated_at TEXT NOT NULL,
    raw TEXT NOT NULL CHECK(json_valid(raw)),
    position INTEGER NOT NULL,
    PRIMARY KEY(sequence_id, id)
) STRICT, WITHOUT ROWID;
CREATE INDEX comments_by_time ON comments(sequence_id, start_s, duration_s, position) WHERE parent_id IS NULL;
CREATE INDEX comments_by_parent ON comments(sequence_id, parent_id) WHERE parent_id IS NOT NULL;
CREATE TABLE exports(
    id INTEGER PRIMARY KEY,
    sequence_id INTEGER REFERENCES sequences(id) ON DELETE SET NULL,
    format TEXT NOT NULL,
    path TEXT,
    state TEXT NOT NULL CHECK(state IN ('running', 'done', 'cancelled', 'failed')),
    detail TEXT,
    started_at TEXT NOT NULL,
    finished_at TEXT
) STRICT;
CREATE TABLE settings(
    key TEXT PRIMARY KEY,
    value TEXT NOT NULL
) STRICT, WITHOUT ROWID;
)";

constexpr std::array allSteps{firstStep};

std::int64_t number(Database& database, char const* sql) {
    return Statement{database, sql}.number();
}

std::int64_t version(Database& database) {
    return number(database, "PRAGMA user_version");
}

void refuseStrangers(Database& database, std::int64_t known) {
    auto const made = version(database);
    auto const isOurs = number(database, "PRAGMA application_id") == applicationId;
    if (!isOurs && (made != 0 || number(database, "SELECT count(*) FROM sqlite_schema") != 0))
        throw DatabaseError("the database belongs to another program; it is left as it is");
    if (made > known)
        throw DatabaseError("the database was written by a newer version of this program (version " +
                            std::to_string(made) + ", this one knows " + std::to_string(known) +
                            "); it is left as it is");
}

void runStep(Database& database, std::span<char const* const> steps) {
    auto transaction = Transaction{database};
    // Asked again under the lock: another process may have come first.
    auto const made = static_cast<std::size_t>(version(database));
    if (made < steps.size()) {
        database.execute(steps[made]);
        database.execute("PRAGMA application_id = " + std::to_string(applicationId));
        database.execute("PRAGMA user_version = " + std::to_string(made + 1));
    }
    transaction.commit();
}

} // namespace

std::span<char const* const> schemaSteps() {
    return allSteps;
}

void prepareSchema(Database& database, std::span<char const* const> steps) {
    auto const known = static_cast<std::int64_t>(steps.size());
    refuseStrangers(database, known);
    database.adopt();
    // NORMAL: what was answered outlives every end of the program; a power failure may take the last moments,
    // never the file. FULL would hold each answer back for the disk, some 8 ms. The program takes the log in
    // when it is idle; only a log of some 40 MB is taken in by a write. Sorting in memory: reading must go on
    // when there is no space left for temporary files.
    database.execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; PRAGMA foreign_keys = ON; "
                     "PRAGMA temp_store = MEMORY; PRAGMA wal_autocheckpoint = 10000");
    while (version(database) < known)
        runStep(database, steps);
}

} // namespace workbench
