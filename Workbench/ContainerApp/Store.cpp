#include "Workbench/ContainerApp/Store.h"

#include "Workbench/ContainerApp/Schema.h"

#include <filesystem>
#include <system_error>

namespace workbench {

namespace {

// The comments are nobody else's affair.
constexpr auto folderPermissions = std::filesystem::perms::owner_all;

std::string withFolder(std::string file) {
    auto const folder = std::filesystem::path{file}.parent_path();
    auto error = std::error_code{};
    if (folder.empty() || !std::filesystem::create_directories(folder, error))
        return file;
    std::filesystem::permissions(folder, folderPermissions, error);
    return file;
}

} // namespace

PreparedDatabase::PreparedDatabase(std::string const& file)
    : Database{withFolder(file)} {
    prepareSchema(*this);
}

Store::Store(std::string const& file)
    : database{file}
    , sequences{database}
    , comments{database, sequences}
    , markers{database, sequences, comments}
    , settings{database}
    , exports{database} {}

} // namespace workbench
