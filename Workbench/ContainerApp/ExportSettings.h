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

// What is left out has its default, what is unknown is ignored. Throws OutputError, with the setting's name,
// for a value that a setting cannot have.
[[nodiscard]] ExportSettings readExportSettings(Json const& settings);

// That the setting `name` has the value `value`, and what it takes instead.
[[nodiscard]] OutputError wrongSetting(std::string const& name, Json const& value, std::string const& wanted);

} // namespace workbench
