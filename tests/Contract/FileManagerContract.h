#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace fcp::test {

// For a platform's own files: `make` and `drop` one by name, and the `manager` that looks.
template <typename Files>
class FileManagerContract : public testing::Test {
protected:
    Files files;
};

TYPED_TEST_SUITE_P(FileManagerContract);

TYPED_TEST_P(FileManagerContract, TellsAtEachCallWhetherTheFileIsThere) {
    auto const path = this->files.make("marker");
    EXPECT_TRUE(this->files.manager.fileExists(path));
    this->files.drop(path);
    EXPECT_FALSE(this->files.manager.fileExists(path));
    EXPECT_EQ(this->files.make("marker"), path);
    EXPECT_TRUE(this->files.manager.fileExists(path));
}

TYPED_TEST_P(FileManagerContract, TheEmptyPathIsNothing) {
    EXPECT_FALSE(this->files.manager.fileExists(""));
}

REGISTER_TYPED_TEST_SUITE_P(FileManagerContract, TellsAtEachCallWhetherTheFileIsThere, TheEmptyPathIsNothing);

// Files in a folder of their own, for a `Manager` that looks at the real ones.
template <typename Manager>
class RealFiles {
public:
    Manager manager;

    RealFiles() {
        auto pattern = (std::filesystem::temp_directory_path() / "zelvix-files.XXXXXX").string();
        folder = mkdtemp(pattern.data());
    }

    ~RealFiles() { std::filesystem::remove_all(folder); }

    RealFiles(RealFiles const&) = delete;
    RealFiles& operator=(RealFiles const&) = delete;

    [[nodiscard]] std::string make(std::string const& name) const {
        std::ofstream(folder / name).put('x');
        return folder / name;
    }

    static void drop(std::string const& path) { std::filesystem::remove(path); }

    std::filesystem::path folder;
};

template <typename Files>
class RealFilesContract : public FileManagerContract<Files> {};

TYPED_TEST_SUITE_P(RealFilesContract);

TYPED_TEST_P(RealFilesContract, AFolderCounts) {
    EXPECT_TRUE(this->files.manager.fileExists(this->files.folder));
}

TYPED_TEST_P(RealFilesContract, AnEmptyFileCounts) {
    std::ofstream(this->files.folder / "empty").flush();
    EXPECT_TRUE(this->files.manager.fileExists(this->files.folder / "empty"));
}

TYPED_TEST_P(RealFilesContract, ALinkCountsAsLongAsItsTargetIsThere) {
    auto const target = this->files.make("target");
    std::filesystem::create_symlink(target, this->files.folder / "link");
    EXPECT_TRUE(this->files.manager.fileExists(this->files.folder / "link"));
    this->files.drop(target);
    EXPECT_FALSE(this->files.manager.fileExists(this->files.folder / "link"));
}

TYPED_TEST_P(RealFilesContract, APathThroughAFileIsNothing) {
    EXPECT_FALSE(this->files.manager.fileExists(this->files.make("file") + "/below"));
}

REGISTER_TYPED_TEST_SUITE_P(RealFilesContract, AFolderCounts, AnEmptyFileCounts,
                            ALinkCountsAsLongAsItsTargetIsThere, APathThroughAFileIsNothing);

} // namespace fcp::test
