#include "Contract/FileManagerContract.h"

#include "Doubles/FakeSystem.h"
#include "Platform/Gtk/PosixFileManager.h"

#include <filesystem>
#include <fstream>

namespace fcp::test {

namespace {

namespace fs = std::filesystem;

class FakeFiles {
public:
    FakeFileManager manager{journal};

    std::string make(std::string const& name) {
        manager.files.insert(name);
        return name;
    }

    void drop(std::string const& name) { manager.files.erase(name); }

private:
    Journal journal;
};

class PosixFiles {
public:
    PosixFileManager manager;

    PosixFiles() {
        auto pattern = (fs::temp_directory_path() / "zelvix-files.XXXXXX").string();
        folder = mkdtemp(pattern.data());
    }

    ~PosixFiles() { fs::remove_all(folder); }

    [[nodiscard]] std::string make(std::string const& name) const {
        std::ofstream(folder / name).put('x');
        return folder / name;
    }

    static void drop(std::string const& path) { fs::remove(path); }

    fs::path folder;
};

using AllFiles = testing::Types<FakeFiles, PosixFiles>;

using PosixFileManagerTest = FileManagerContract<PosixFiles>;

INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, FileManagerContract, AllFiles);

TEST_F(PosixFileManagerTest, AFolderCounts) {
    EXPECT_TRUE(files.manager.fileExists(files.folder));
}

TEST_F(PosixFileManagerTest, AnEmptyFileCounts) {
    std::ofstream(files.folder / "empty").flush();
    EXPECT_TRUE(files.manager.fileExists(files.folder / "empty"));
}

TEST_F(PosixFileManagerTest, ALinkCountsAsLongAsItsTargetIsThere) {
    auto const target = files.make("target");
    fs::create_symlink(target, files.folder / "link");
    EXPECT_TRUE(files.manager.fileExists(files.folder / "link"));
    PosixFiles::drop(target);
    EXPECT_FALSE(files.manager.fileExists(files.folder / "link"));
}

TEST_F(PosixFileManagerTest, APathThroughAFileIsNothing) {
    EXPECT_FALSE(files.manager.fileExists(files.make("file") + "/below"));
}

} // namespace

} // namespace fcp::test
