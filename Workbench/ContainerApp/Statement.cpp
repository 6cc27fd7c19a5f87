#include "Workbench/ContainerApp/Statement.h"

#include <sqlite3.h>

namespace workbench {

Rows::Rows(Database const& theDatabase, sqlite3_stmt* theStatement)
    : database{theDatabase}
    , statement{theStatement} {}

Rows::~Rows() {
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
}

bool Rows::next() {
    auto const status = sqlite3_step(statement);
    if (status != SQLITE_ROW && status != SQLITE_DONE)
        database.fail("cannot use the database");
    return status == SQLITE_ROW;
}

std::string Rows::text(int column) const {
    return optionalText(column).value_or(std::string{});
}

std::optional<std::string> Rows::optionalText(int column) const {
    auto const* bytes = reinterpret_cast<char const*>(sqlite3_column_text(statement, column));
    if (!bytes)
        return {};
    return std::string(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
}

std::int64_t Rows::integer(int column) const {
    return sqlite3_column_int64(statement, column);
}

double Rows::real(int column) const {
    return sqlite3_column_double(statement, column);
}

void Statement::Finalize::operator()(sqlite3_stmt* handle) const {
    sqlite3_finalize(handle);
}

Statement::Statement(Database& theDatabase, std::string_view sql)
    : database{theDatabase} {
    sqlite3_stmt* handle = nullptr;
    check(sqlite3_prepare_v3(database.handle(), sql.data(), static_cast<int>(sql.size()),
                             SQLITE_PREPARE_PERSISTENT, &handle, nullptr));
    statement.reset(handle);
}

int Statement::takeSteps() {
    return sqlite3_stmt_status(statement.get(), SQLITE_STMTSTATUS_VM_STEP, 1);
}

void Statement::bind(int place, std::int64_t value) {
    check(sqlite3_bind_int64(statement.get(), place, value));
}

void Statement::bind(int place, double value) {
    check(sqlite3_bind_double(statement.get(), place, value));
}

void Statement::bind(int place, std::string const& value) {
    check(sqlite3_bind_text64(statement.get(), place, value.data(), value.size(), SQLITE_TRANSIENT,
                              SQLITE_UTF8));
}

void Statement::bind(int place, std::optional<std::string> const& value) {
    if (value)
        bind(place, *value);
    else
        check(sqlite3_bind_null(statement.get(), place));
}

void Statement::bind(int place, std::optional<std::int64_t> const& value) {
    if (value)
        bind(place, *value);
    else
        check(sqlite3_bind_null(statement.get(), place));
}

void Statement::check(int status) const {
    if (status != SQLITE_OK)
        database.fail("cannot use the database");
}

int Statement::finish(Rows& rows) {
    while (rows.next()) {
    }
    return sqlite3_changes(database.handle());
}

std::int64_t Statement::firstNumber(Rows& rows) {
    if (!rows.next())
        return 0;
    auto const number = rows.integer(0);
    while (rows.next()) {
    }
    return number;
}

} // namespace workbench
