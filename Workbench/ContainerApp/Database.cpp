#include "Workbench/ContainerApp/Database.h"

#include <filesystem>
#include <sqlite3.h>

namespace workbench {

namespace {

// Long enough for a checkpoint by a person's sqlite3 session, short enough for a command's minute.
constexpr int busyMilliseconds = 5000;

// One thread needs no locks of its own.
constexpr int openFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;

char const* wayOut(int status) {
    switch (status & 0xFF) { // the rest tells where it was found
    case SQLITE_FULL:
        return "; nothing that was kept is lost: make room on the disk, and try again";
    case SQLITE_CANTOPEN:
    case SQLITE_READONLY:
        return "; let this user write the file and its folder, or take another one with --database";
    default:
        return "";
    }
}

bool hasLog(std::string const& file) {
    auto error = std::error_code{};
    auto const size = std::filesystem::file_size(file + "-wal", error);
    return !error && size > 0;
}

void setLogIsKept(sqlite3* handle, int isKept) {
    sqlite3_db_config(handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, isKept, nullptr);
}

} // namespace

void Database::Close::operator()(sqlite3* handle) const {
    sqlite3_close_v2(handle);
}

Database::Database(std::string const& file) {
    auto const isLeftBehind = hasLog(file);
    sqlite3* handle = nullptr;
    auto const status = sqlite3_open_v2(file.c_str(), &handle, openFlags, nullptr);
    connection.reset(handle);
    if (status != SQLITE_OK)
        fail("cannot open " + file);
    if (sqlite3_db_readonly(handle, "main") == 1)
        throw DatabaseError("cannot write " + file + wayOut(SQLITE_READONLY));
    // What a killed program left in the log is taken in at the close; a stranger's is to stay where it is.
    setLogIsKept(handle, isLeftBehind ? 1 : 0);
    sqlite3_extended_result_codes(handle, 1);
    sqlite3_busy_timeout(handle, busyMilliseconds);
}

void Database::execute(std::string const& sql) {
    if (sqlite3_exec(handle(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        fail("cannot use the database");
}

void Database::adopt() {
    setLogIsKept(handle(), 0);
}

void Database::takeLogIn() {
    execute("PRAGMA wal_checkpoint(PASSIVE)");
}

void Database::emptyLog() {
    execute("PRAGMA wal_checkpoint(TRUNCATE)");
}

void Database::fail(std::string const& whatFailed) const {
    if (!connection)
        throw DatabaseError(whatFailed + ": out of memory");
    throw DatabaseError(whatFailed + ": " + sqlite3_errmsg(handle()) + wayOut(sqlite3_errcode(handle())));
}

Transaction::Transaction(Database& theDatabase)
    : database{theDatabase} {
    database.execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
    // A full disk may have ended the transaction already, and a failed rollback leaves nothing to be done.
    if (open && sqlite3_get_autocommit(database.handle()) == 0)
        sqlite3_exec(database.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::commit() {
    database.execute("COMMIT");
    open = false;
}

} // namespace workbench
