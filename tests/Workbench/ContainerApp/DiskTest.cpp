#include "Workbench/ContainerApp/ContainerFixture.h"

namespace workbench {

namespace {

constexpr auto fullDisk =
    "database or disk is full; nothing that was kept is lost: make room on the disk, and try "
    "again\n";
constexpr auto readOnly =
    "; let this user write the file and its folder, or take another one with --database\n";

// A container whose store lies on a disk of its own.
class DiskTest : public ContainerFixture {
protected:
    void SetUp() override { std::filesystem::create_directory(disk); }

    [[nodiscard]] ProcessLimits on(Disk::Kind kind, unsigned long size = 0) const {
        auto limits = ProcessLimits{};
        limits.disk = Disk{.folder = disk, .kind = kind, .size = size};
        return limits;
    }

    void start(ProcessLimits const& limits) {
        database = disk + "/store.sqlite";
        startContainer(limits);
    }

    // Another program fills the disk, to the last byte.
    void fill() const { std::ignore = outputOf("cat /dev/zero > '" + filler() + "' 2>/dev/null"); }

    void makeRoom() const { std::filesystem::remove(filler()); }

    [[nodiscard]] std::string filler() const { return container->seen(disk + "/filler"); }

    [[nodiscard]] std::string storeSays(std::string const& query) const {
        // Of copies: the program that reads them would look for the store itself under its name out here.
        auto const copies = "cp '" + container->seen(database) + "' '" + container->seen(database + "-wal") +
                            "' '" + folder.path() + "' && ";
        return outputOf(copies + "sqlite3 '" + folder / "store.sqlite" + "' \"" + query + "\"");
    }

    [[nodiscard]] static Json comment(std::string const& id, std::size_t size) {
        return {{"id", id}, {"seconds", 1}, {"text", std::string(size, 'x')}};
    }

    // The exit code and what is said of a start that fails.
    [[nodiscard]] std::pair<int, std::string> refusal(ProcessLimits const& limits) const {
        auto process = ContainerProcess{{"--no-window", "--database", disk + "/store.sqlite"}, limits};
        auto const code = process.wait();
        return {code, process.complaints()};
    }

    std::string const disk = folder / "disk";
};

} // namespace

TEST_F(DiskTest, LosesNothingOnAFullDiskAndGoesOnWhenThereIsRoom) {
    start(on(Disk::Kind::Small, 2'000'000));
    ASSERT_EQ(true, sync(comment("a", 10)));
    fill();
    auto kept = 1;
    // The log may still have some room of its own.
    while (kept < 100 && sync(comment("filling" + std::to_string(kept), 10'000)) == true)
        ++kept;
    ASSERT_LT(kept, 100);
    EXPECT_TRUE(
        complains(std::string{"zelvix-container: syncComment failed: cannot use the database: "} + fullDisk))
        << container->complaints();
    EXPECT_EQ("a", markerAt(1).at("id"));
    EXPECT_EQ(false, client.request("syncAllComments", {{"comments", {comment("b", 500'000)}}}));
    EXPECT_EQ(std::to_string(kept) + "\n", storeSays("SELECT count(*) FROM comments"));
    makeRoom();
    EXPECT_EQ(true, sync(comment("c", 10'000)));
    EXPECT_EQ(std::to_string(kept + 1) + "\n", storeSays("SELECT count(*) FROM comments"));
    EXPECT_EQ("ok\n", storeSays("PRAGMA integrity_check"));
}

TEST_F(DiskTest, SaysThatTheDiskIsFullWhenAnExportFillsIt) {
    start(on(Disk::Kind::Small, 2'000'000));
    ASSERT_EQ(true, sync(comment("a", 300'000)));
    fill();
    std::ignore = outputOf("truncate --size=-100K '" + filler() + "'");
    EXPECT_EQ(true, client.request("startExport", {{"format", "csv"}, {"folder", disk}}));
    EXPECT_TRUE(complains("zelvix-container: the export failed: cannot write comments.csv: No space left on "
                          "device\n"))
        << container->complaints();
    EXPECT_EQ("filler store.sqlite store.sqlite-shm store.sqlite-wal",
              outputOf("cd '" + container->seen(disk) + "' && ls -A | tr '\\n' ' ' | sed 's/ $//'"));
}

TEST_F(DiskTest, SaysThatItCannotBeginOnAFullDisk) {
    auto const [code, complaint] = refusal(on(Disk::Kind::Small, 4096));
    EXPECT_EQ(5, code);
    EXPECT_EQ("zelvix-container: " + disk + "/store.sqlite: cannot use the database: " + fullDisk, complaint);
}

TEST_F(DiskTest, SaysThatItCannotWriteAReadOnlyFolder) {
    auto const file = disk + "/store.sqlite";
    EXPECT_EQ((std::pair{5, "zelvix-container: " + file + ": cannot open " + file +
                                ": unable to open database file" + readOnly}),
              refusal(on(Disk::Kind::ReadOnly)));
    start({});
    ASSERT_EQ(true, sync(comment("a", 10)));
    container->signal(SIGKILL);
    ASSERT_EQ(-SIGKILL, container->wait());
    auto const before = contentsOf(file);
    auto const log = contentsOf(file + "-wal");
    ASSERT_NE("", log);
    auto const [code, complaint] = refusal(on(Disk::Kind::ReadOnly));
    EXPECT_EQ(5, code);
    EXPECT_EQ("zelvix-container: " + file + ": cannot write " + file + readOnly, complaint);
    EXPECT_EQ(before, contentsOf(file));
    EXPECT_EQ(log, contentsOf(file + "-wal"));
    start({});
    EXPECT_EQ("a", markerAt(1).at("id"));
}

} // namespace workbench
