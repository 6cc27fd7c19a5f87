#pragma once

#include "Workbench/ContainerApp/Store.h"

#include <string>
#include <vector>

namespace workbench {

// What the window shows, as text.
struct WindowContent {
    struct CommentRow {
        std::string time;
        std::string author;
        std::string text;
        bool isReply = false;
        bool isResolved = false;

        friend bool operator==(CommentRow const&, CommentRow const&) = default;
    };

    struct ExportRow {
        std::string time; // of day, in the person's own zone
        std::string text;
        ExportState state = ExportState::Done;

        friend bool operator==(ExportRow const&, ExportRow const&) = default;
    };

    // One that can be shown.
    struct SequenceRow {
        std::string key;
        std::string name;

        friend bool operator==(SequenceRow const&, SequenceRow const&) = default;
    };

    std::vector<SequenceRow> sequences; // the active one first
    std::string shown; // the key of the one that is shown
    std::string folder; // for exports
    std::string summary; // "12 comments, 3 resolved"
    std::vector<CommentRow> comments;
    std::vector<ExportRow> exports;
};

// The sequence `key`, or the active one when it is empty or unknown, and the newest exports. Throws
// DatabaseError.
[[nodiscard]] WindowContent readWindowContent(Store& store, std::string const& key = {});

} // namespace workbench
