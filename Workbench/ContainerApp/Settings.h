#pragma once

#include "Workbench/ContainerApp/Statement.h"

#include <optional>
#include <string>

namespace workbench {

// What the program remembers from run to run. Throws DatabaseError.
class Settings {
public:
    explicit Settings(Database& database);

    [[nodiscard]] std::optional<std::string> value(std::string const& key);
    void set(std::string const& key, std::string const& value);

private:
    Statement read;
    Statement write;
};

// The folder for exports that was chosen last.
inline constexpr char const* outputFolderSetting = "outputFolder";

// The folder for exports: the one that was chosen last, else the user's Documents.
[[nodiscard]] std::string namedOutputFolder(Settings& settings);

// The same, ready for an export: Documents are made when they are missing.
[[nodiscard]] std::string outputFolder(Settings& settings);

} // namespace workbench
