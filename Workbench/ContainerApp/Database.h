#pragma once

#include <memory>
#include <stdexcept>
#include <string>

struct sqlite3;

namespace workbench {

// What went wrong, in a sentence for a person. Thrown by everything that touches the database; caught where a
// command is answered and where the program starts.
class DatabaseError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The one connection to the store. It and all that hangs from it stay on the thread that opened it.
class Database {
public:
    // Creates the file when it is missing; its folder must exist. Nothing is written to a file that is there,
    // nor to its log, until it is adopted.
    explicit Database(std::string const& file);

    Database(Database const&) = delete;
    Database& operator=(Database const&) = delete;

    [[nodiscard]] sqlite3* handle() const { return connection.get(); }

    // The file is ours: what a killed program left in its log may be taken in.
    void adopt();

    // Runs one or several statements that take no values and give no rows.
    void execute(std::string const& sql);

    // Brings what stands in the write-ahead log into the file itself.
    void takeLogIn();

    // The same, and empties the log. Waits for other readers of the file.
    void emptyLog();

    [[noreturn]] void fail(std::string const& whatFailed) const;

private:
    struct Close {
        void operator()(sqlite3* handle) const;
    };

    std::unique_ptr<sqlite3, Close> connection;
};

// All or nothing: without `commit` everything since the construction is undone. Transactions do not nest.
class Transaction {
public:
    explicit Transaction(Database& database);
    ~Transaction();

    Transaction(Transaction const&) = delete;
    Transaction& operator=(Transaction const&) = delete;

    void commit();

private:
    Database& database;
    bool open = true;
};

} // namespace workbench
