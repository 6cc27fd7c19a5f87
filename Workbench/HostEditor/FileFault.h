#pragma once

#include <filesystem>
#include <string>

namespace workbench {

// Why a file's bytes cannot be all of a media file, in words for the user: it is missing, a folder,
// unreadable, empty, or shorter than it says itself. Empty when nothing speaks against it. The engine alone
// would open a film that was cut in the middle and show its last picture to the end.
[[nodiscard]] std::string faultOfFile(std::filesystem::path const& path);

// Whether the file begins like text. The engine would draw it as a title.
[[nodiscard]] bool beginsAsText(std::filesystem::path const& path);

} // namespace workbench
