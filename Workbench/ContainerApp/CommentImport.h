#pragma once

#include "Workbench/ContainerApp/CommentStore.h"
#include "Workbench/ContainerApp/ImportedComment.h"

#include <cstddef>
#include <string>
#include <vector>

namespace workbench {

// What came of an import.
struct ImportOutcome {
    std::size_t added = 0;
    std::size_t changed = 0;
    std::size_t known = 0; // were there already, as they are in the file

    friend bool operator==(ImportOutcome const&, ImportOutcome const&) = default;
};

// Reads comments from files into the store: comma-separated values and guides of Kdenlive. What the list
// holds and the file does not stays. Main thread only.
class CommentImport {
public:
    CommentImport(CommentStore& comments, SequenceStore& sequences);

    CommentImport(CommentImport const&) = delete;
    CommentImport& operator=(CommentImport const&) = delete;

    // Into one sequence, the whole file in one transaction or nothing of it. Throws ImportError, which names
    // the file, and DatabaseError.
    ImportOutcome read(std::string const& file, std::string const& sequenceKey);

private:
    ImportOutcome merge(std::vector<ImportedComment> const& imported, std::vector<Comment> const& present,
                        std::string const& sequenceKey);

    CommentStore& comments;
    SequenceStore& sequences;
};

// "imported 3 comments: 2 new, 1 changed, 0 known already".
[[nodiscard]] std::string sentenceFor(ImportOutcome const& outcome);

} // namespace workbench
