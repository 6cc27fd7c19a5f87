#pragma once

#include "Workbench/ContainerApp/Comment.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

// The start of a comment that is known already; none for an unknown one.
using KnownStart = std::function<std::optional<double>(std::string const& id)>;

// Comments and their replies as one list in the order in which they came, each reply behind its parent and
// with a time, its own or its parent's. None when an identifier stands in it twice or a time stays open.
[[nodiscard]] std::optional<std::vector<CommentDraft>> flatten(std::vector<CommentDraft> drafts,
                                                               KnownStart const& knownStart);

// Every comment once, each reply behind its parent, however deep; what hangs from no comment stands at its
// own place. `comments` in order of time.
[[nodiscard]] std::vector<Comment> threaded(std::vector<Comment> comments);

} // namespace workbench
