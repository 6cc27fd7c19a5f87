#pragma once

#include "Workbench/ContainerApp/Comment.h"
#include "Workbench/ContainerApp/Json.h"

#include <optional>
#include <string>
#include <vector>

// Reads what pages send, in the key spellings that review tools use. A value of a wrong type counts as
// absent. Any thread.
namespace workbench {

// None for what is no comment: without an identifier, with a time before the start, or with a reply of that
// kind.
[[nodiscard]] std::optional<CommentDraft> readComment(Json const& value);

// One comment as the panel hands it over: the page's whole message, whose envelope is no part of the comment.
[[nodiscard]] std::optional<CommentDraft> readCommentMessage(Json message);

// None when one of them is no comment.
[[nodiscard]] std::optional<std::vector<CommentDraft>> readComments(Json const& list);

// A text, or a whole number, which the bus may carry as a floating-point one.
[[nodiscard]] std::optional<std::string> readIdentifier(Json const& value);

// Finite numbers only.
[[nodiscard]] std::optional<double> readNumber(Json const& value);

// The member `key` of `object`, null when there is none.
[[nodiscard]] Json const& member(Json const& object, char const* key);

} // namespace workbench
