#pragma once

#include <filesystem>

namespace workbench {

// The folder that holds the running program.
[[nodiscard]] std::filesystem::path programFolder();

} // namespace workbench
