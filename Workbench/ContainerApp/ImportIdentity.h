#pragma once

#include "Workbench/ContainerApp/Comment.h"
#include "Workbench/ContainerApp/ImportedComment.h"
#include "Workbench/ContainerApp/Timecode.h"

#include <string>
#include <vector>

namespace workbench {

// Gives every comment of a file an identifier. One that the file does not name is that of the comment of
// `present` that says the same at the same time, else one that follows from time and text: a file that is
// imported twice makes no comment twice. Throws ImportError for one that stands in the file twice.
void identify(std::vector<ImportedComment>& imported, std::vector<Comment> const& present);

// Marks the guides that an export of `present` would write just so: there authors and replies are part of the
// text. Throws OutputError for a rate that nobody's sequence has.
void markKnownGuides(std::vector<ImportedComment>& guides, std::vector<Comment> const& present,
                     FrameRate rate);

// Throws ImportError for a reply to itself, and for one to a comment that is neither in the file nor present.
void checkParents(std::vector<ImportedComment> const& imported, std::vector<Comment> const& present);

} // namespace workbench
