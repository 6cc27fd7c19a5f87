#pragma once

#include "Workbench/ContainerApp/Comment.h"
#include "Workbench/ContainerApp/CommentWriter.h"
#include "Workbench/ContainerApp/Timecode.h"

#include <optional>
#include <string>
#include <vector>

namespace workbench {

// Writes comments as comma-separated values, in the form that spreadsheets open without questions: UTF-8 with
// a byte-order mark, CRLF, quoted where needed, and no text that would be taken for a formula.
class CsvWriter final : public CommentWriter {
public:
    // Without a frame count the columns "timecode" and "frame" stay empty.
    CsvWriter(std::optional<FrameCount> frameCount, std::vector<Comment> comments);

    void write(TextSink const& sink) const override;

    [[nodiscard]] static std::string header();

private:
    [[nodiscard]] std::string line(Comment const& comment) const;

    std::optional<FrameCount> frameCount;
    std::vector<Comment> comments;
};

} // namespace workbench
