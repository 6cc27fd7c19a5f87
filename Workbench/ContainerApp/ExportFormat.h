#pragma once

#include "Workbench/ContainerApp/CommentWriter.h"
#include "Workbench/ContainerApp/ExportContent.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace workbench {

// A format that comments can be exported in.
struct ExportFormat {
    std::string_view name; // as a page asks for it
    std::string_view title; // for people
    std::string_view extension; // of its files: ".csv"
    bool needsRate = true; // takes no content without a frame count

    // Throws OutputError for a content that the format cannot hold.
    std::unique_ptr<CommentWriter> (*writerFor)(ExportContent const& content) = nullptr;
};

// All of them, in the order of their names.
[[nodiscard]] std::span<ExportFormat const> exportFormats();

// Null for a name that is none.
[[nodiscard]] ExportFormat const* findExportFormat(std::string_view name);

// All names, for a sentence: "\"csv\" or \"edl\"".
[[nodiscard]] std::string exportFormatNames();

} // namespace workbench
