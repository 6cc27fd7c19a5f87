#pragma once

#include "Workbench/ContainerApp/Json.h"
#include "Workbench/ContainerApp/OutputFile.h"

#include <optional>
#include <string>

namespace workbench {

// What a page asks for when it starts an export.
struct ExportSettings {
    std::string format;
    std::optional<std::string> folder;
    std::optional<std::string> fileName;
    bool openOnly = false; // leave out what is resolved
    bool replies = true;
    OnExists onExists = OnExists::Rename;
    std::optional<std::string> timecodeStart; // the label of the first frame
    std::optional<double> frameRate; // rounded, as the panel tells it to the page
    std::optional<std::string> sequence;
};

// None when a setting has a value that it cannot have; what is left out has its default, what is unknown is
// ignored.
[[nodiscard]] std::optional<ExportSettings> readExportSettings(Json const& settings);

} // namespace workbench
