#pragma once

#include <gtest/gtest.h>

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

} // namespace fcp::test
