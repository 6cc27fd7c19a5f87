#include "Workbench/ContainerApp/Schema.h"

#include "Workbench/ContainerApp/Store.h"
#include "Workbench/ContainerApp/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>

namespace workbench {

TEST(Schema, BringsAnOlderDatabaseUpStepByStep) {
    auto const folder = TemporaryFolder{};
    auto database = Database{folder / "x"};
    auto const first = std::array{"CREATE TABLE a(x INTEGER) STRICT; INSERT INTO a VALUES(7)"};
    auto const all = std::array{first[0], "ALTER TABLE a ADD COLUMN y INTEGER", "UPDATE a SET y = x + 1"};
    prepareSchema(database, first);
    EXPECT_EQ(1, (Statement{database, "PRAGMA user_version"}.number()));
    prepareSchema(database, all);
    EXPECT_EQ(3, (Statement{database, "PRAGMA user_version"}.number()));
    EXPECT_EQ(8, (Statement{database, "SELECT y FROM a"}.number()));
}

TEST(Schema, LeavesAStepThatFailsUndone) {
    auto const folder = TemporaryFolder{};
    auto database = Database{folder / "x"};
    auto const steps =
        std::array{"CREATE TABLE a(x INTEGER) STRICT", "CREATE TABLE b(x INTEGER) STRICT; nonsense"};
    EXPECT_THROW(prepareSchema(database, steps), DatabaseError);
    EXPECT_EQ(1, (Statement{database, "PRAGMA user_version"}.number()));
    EXPECT_EQ(0, (Statement{database, "SELECT count(*) FROM sqlite_schema WHERE name = 'b'"}.number()));
}

TEST(Schema, RefusesANewerDatabaseAndLeavesItUntouched) {
    auto const folder = TemporaryFolder{};
    auto const file = folder / "x";
    {
        auto const store = Store{file};
    }
    std::ignore = outputOf("sqlite3 '" + file + "' 'PRAGMA user_version = 99'");
    auto const before = contentsOf(file);
    try {
        auto const store = Store{file};
        FAIL() << "opened";
    } catch (DatabaseError const& error) {
        EXPECT_STREQ(
            "the database was written by a newer version of this program (version 99, this one knows 1); "
            "it is left as it is",
            error.what());
    }
    EXPECT_EQ(before, contentsOf(file));
    EXPECT_EQ("x", folder.names());
}

TEST(Schema, RefusesANewerDatabaseAndLeavesTheLogThatAKilledProgramLeft) {
    auto const folder = TemporaryFolder{};
    auto const file = folder / "x";
    {
        auto const store = Store{file};
    }
    std::ignore = outputOf("sqlite3 '" + file +
                           "' '.dbconfig no_ckpt_on_close on' 'PRAGMA user_version = 99' "
                           "'CREATE TABLE newer(x)'");
    auto const before = contentsOf(file);
    auto const log = contentsOf(file + "-wal");
    ASSERT_NE("", log);
    EXPECT_THROW(Store{file}, DatabaseError);
    EXPECT_EQ(before, contentsOf(file));
    EXPECT_EQ(log, contentsOf(file + "-wal"));
    EXPECT_EQ("99\nnewer\n", outputOf("sqlite3 '" + file +
                                      "' 'PRAGMA user_version' \"SELECT name FROM sqlite_schema WHERE name = "
                                      "'newer'\""));
}

TEST(Schema, TakesInTheLogThatItsOwnKilledProgramLeft) {
    auto const folder = TemporaryFolder{};
    auto const file = folder / "x";
    {
        auto const store = Store{file};
    }
    std::ignore = outputOf("sqlite3 '" + file +
                           "' '.dbconfig no_ckpt_on_close on' \"INSERT INTO settings VALUES('a', 'b')\"");
    ASSERT_NE("", contentsOf(file + "-wal"));
    EXPECT_EQ("b", Store{file}.settings.value("a"));
    EXPECT_EQ("x", folder.names());
}

TEST(Schema, RefusesAnotherProgramsDatabaseAndLeavesItUntouched) {
    auto const folder = TemporaryFolder{};
    auto const file = folder / "x";
    std::ignore = outputOf("sqlite3 '" + file + "' 'CREATE TABLE theirs(x)'");
    auto const before = contentsOf(file);
    EXPECT_THROW(Store{file}, DatabaseError);
    EXPECT_EQ(before, contentsOf(file));
}

TEST(Schema, RefusesWhatIsNoDatabaseAndLeavesItUntouched) {
    auto const folder = TemporaryFolder{};
    auto const file = folder / "x";
    auto const text = std::string(5000, 'x');
    writeFile(file, text);
    EXPECT_THROW(Store{file}, DatabaseError);
    EXPECT_EQ(text, contentsOf(file));
}

TEST(Schema, MakesADatabaseOfAnEmptyFile) {
    auto const folder = TemporaryFolder{};
    auto const file = folder / "x";
    writeFile(file, "");
    EXPECT_EQ(0, Store{file}.comments.count());
}

} // namespace workbench
