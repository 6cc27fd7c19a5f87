#include "Doubles/FakeSystem.h"
#include "Platform/Gtk/PosixFileManager.h"

#include <gtest/gtest.h>

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

template <typename Files>
class FileManagerContract : public testing::Test {
protected:
    Files files;
};

using AllFiles = testing::Types<FakeFiles, PosixFiles>;

TYPED_TEST_SUITE(FileManagerContract, AllFiles);

using PosixFileManagerTest = FileManagerContract<PosixFiles>;

} // namespace

TYPED_TEST(FileManagerContract, TellsAtEachCallWhetherTheFileIsThere) {
    auto const path = this->files.make("marker");
    EXPECT_TRUE(this->files.manager.fileExists(path));
    this->files.drop(path);
    EXPECT_FALSE(this->files.manager.fileExists(path));
    EXPECT_EQ(this->files.make("marker"), path);
    EXPECT_TRUE(this->files.manager.fileExists(path));
}

TYPED_TEST(FileManagerContract, TheEmptyPathIsNothing) {
    EXPECT_FALSE(this->files.manager.fileExists(""));
}

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

} // namespace fcp::test
