#pragma once

#include "Workbench/ContainerApp/Database.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct sqlite3_stmt;

namespace workbench {

// The rows of one run of a statement, from first to last. Ends the run when it goes; the statement outlives
// it.
class Rows {
public:
    Rows(Database const& database, sqlite3_stmt* statement);
    ~Rows();

    Rows(Rows const&) = delete;
    Rows& operator=(Rows const&) = delete;

    // Steps to the next row; false after the last one.
    bool next();

    // Columns count from 0.
    [[nodiscard]] std::string text(int column) const;
    [[nodiscard]] std::optional<std::string> optionalText(int column) const;
    [[nodiscard]] std::int64_t integer(int column) const;
    [[nodiscard]] double real(int column) const;

private:
    Database const& database;
    sqlite3_stmt* statement;
};

// One statement, compiled once. Throws DatabaseError, and may be used again afterwards.
class Statement {
public:
    Statement(Database& database, std::string_view sql);

    // The values take the places ?1, ?2, ... in order. One run at a time.
    template <class... Values>
    [[nodiscard]] Rows query(Values const&... values) {
        auto place = 0;
        (bind(++place, values), ...);
        return Rows{database, statement.get()};
    }

    // For statements whose rows are of no interest; returns how many rows changed.
    template <class... Values>
    int run(Values const&... values) {
        auto rows = query(values...);
        return finish(rows);
    }

    // The first column of the first row, 0 without rows. Runs to the end, as a statement that writes must.
    template <class... Values>
    std::int64_t number(Values const&... values) {
        auto rows = query(values...);
        return firstNumber(rows);
    }

    // Machine steps since the last call: what a run costs, the same on every computer.
    [[nodiscard]] int takeSteps();

private:
    struct Finalize {
        void operator()(sqlite3_stmt* handle) const;
    };

    void bind(int place, std::int64_t value);

    void bind(int place, int value) { bind(place, std::int64_t{value}); }

    void bind(int place, bool value) { bind(place, std::int64_t{value}); }

    void bind(int place, double value);
    void bind(int place, std::string const& value);
    void bind(int place, std::optional<std::string> const& value);
    void bind(int place, std::optional<std::int64_t> const& value);
    void check(int status) const;
    int finish(Rows& rows);
    static std::int64_t firstNumber(Rows& rows);

    Database& database;
    std::unique_ptr<sqlite3_stmt, Finalize> statement;
};

} // namespace workbench
