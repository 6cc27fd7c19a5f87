#include "Contract/FileManagerContract.h"

#include "Doubles/FakeSystem.h"
#include "Platform/Gtk/PosixFileManager.h"

namespace fcp::test {

namespace {

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

using PosixFiles = RealFiles<PosixFileManager>;
using AllFiles = testing::Types<FakeFiles, PosixFiles>;

INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, FileManagerContract, AllFiles);

INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, RealFilesContract, PosixFiles);

} // namespace

} // namespace fcp::test
