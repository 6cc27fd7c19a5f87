#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace workbench {

// A comment as a file tells it. A member that the file has no place for is none, which is not the same as
// empty: it leaves alone what is known.
struct ImportedComment {
    std::size_t line = 0; // where it begins in the file
    std::optional<std::string> id;
    std::optional<std::string> parentId; // empty for a comment that is no reply
    std::optional<std::string> author;
    std::optional<std::string> text;
    double start = 0;
    std::optional<double> duration;
    std::optional<std::string> colour; // empty for none
    std::optional<bool> resolved;
    bool isKnown = false; // the list says the same, perhaps in several comments: nothing is to be done
};

} // namespace workbench
