#pragma once

#include <optional>
#include <string>
#include <vector>

namespace workbench {

// One review comment or reply, as it is kept. Times are seconds from the start of the sequence.
struct Comment {
    std::string id;
    std::optional<std::string> parentId; // of a reply
    std::string author;
    std::string text;
    double start = 0;
    double duration = 0;
    std::optional<std::string> colour;
    bool resolved = false;
};

// One review comment as it came off the bus: valid, but what it leaves out is still open.
struct CommentDraft {
    Comment comment;
    bool hasStart = false; // a reply may leave its time to its parent
    std::optional<std::string> sequence; // where the page wants it, when it says so
    std::optional<std::string> createdAt; // dates are kept as the page writes them
    std::optional<std::string> updatedAt;
    std::string raw; // JSON: every key that came
    bool hasReplies = false; // else what is known of them stays
    std::vector<CommentDraft> replies;
};

} // namespace workbench
