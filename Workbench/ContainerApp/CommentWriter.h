#pragma once

#include <functional>
#include <string_view>

namespace workbench {

// Takes the text of an export piece by piece. What it throws ends the export.
using TextSink = std::function<void(std::string_view piece)>;

// One export in one format: it holds all that it writes, so it may be made on one thread and used on another.
class CommentWriter {
public:
    virtual ~CommentWriter() = default;

    // The whole text, in pieces of about one comment each: between two of them an export can be cancelled.
    virtual void write(TextSink const& sink) const = 0;
};

} // namespace workbench
