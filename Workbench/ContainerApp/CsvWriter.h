#pragma once

#include "Workbench/ContainerApp/Comment.h"
#include "Workbench/ContainerApp/Timecode.h"

#include <optional>
#include <string>

namespace workbench {

// Writes comments as comma-separated values, in the form that spreadsheets open without questions: UTF-8 with
// a byte-order mark, CRLF, quoted where needed, and no text that would be taken for a formula. Any thread.
class CsvWriter {
public:
    // Without a frame count the columns "timecode" and "frame" stay empty.
    explicit CsvWriter(std::optional<FrameCount> frameCount);

    [[nodiscard]] static std::string header();
    [[nodiscard]] std::string line(Comment const& comment) const;

private:
    std::optional<FrameCount> frameCount;
};

} // namespace workbench
