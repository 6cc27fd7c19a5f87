#pragma once

#include "Workbench/HostEditor/Sequence.h"

#include <filesystem>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace workbench {

// What came out of one file.
struct OpenedFile {
    std::vector<std::unique_ptr<Sequence>> sequences; // at least one
    std::size_t active = 0; // the one that the project was left at
    std::vector<std::string> notes; // what is missing in it, one line each
};

// Opens a video, a still, a sound file or a project: its sequences, or the reason in words for the user. Main
// thread, while there is a MediaEngine; takes tens of milliseconds.
[[nodiscard]] std::variant<OpenedFile, std::string> openMediaFile(std::filesystem::path const& given);

} // namespace workbench
