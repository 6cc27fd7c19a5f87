#include "Workbench/ContainerApp/CommentReader.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace workbench {

namespace {

using Keys = std::initializer_list<char const*>;

std::optional<std::string> readText(Json const& value) {
    if (!value.is_string())
        return {};
    return value.get<std::string>();
}

std::optional<std::string> readLabel(Json const& value) {
    auto text = readText(value);
    return text && !text->empty() ? text : std::nullopt;
}

std::optional<bool> readBoolean(Json const& value) {
    if (!value.is_boolean())
        return {};
    return value.get<bool>();
}

std::optional<std::string> readAuthor(Json const& value) {
    return readText(value.is_object() ? member(value, "name") : value);
}

// The first spelling that holds a value of the right type.
template <class Read>
auto first(Json const& object, Keys keys, Read read) -> decltype(read(object)) {
    for (auto const* key : keys)
        if (auto value = read(member(object, key)))
            return value;
    return {};
}

double readDuration(Json const& value, double start) {
    auto const duration = first(value, {"duration"}, readNumber);
    auto const end = first(value, {"end"}, readNumber);
    if (duration)
        return std::max(*duration, 0.0);
    return end ? std::max(*end - start, 0.0) : 0.0;
}

std::string written(Json const& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

bool readReplies(Json const& value, CommentDraft& draft) {
    auto const& replies = member(value, "replies");
    auto const isList = replies.is_array() &&
                        std::ranges::all_of(replies, [](Json const& entry) { return entry.is_object(); });
    if (!isList)
        return true;
    auto read = readComments(replies);
    draft.hasReplies = read.has_value();
    if (read)
        draft.replies = std::move(*read);
    return draft.hasReplies;
}

CommentDraft readMembers(Json const& value) {
    auto draft = CommentDraft{};
    auto& comment = draft.comment;
    auto const start = first(value, {"seconds", "time", "start", "timestamp"}, readNumber);
    draft.hasStart = start.has_value();
    comment.start = start.value_or(0);
    comment.duration = readDuration(value, comment.start);
    comment.text = first(value, {"text", "body", "message"}, readText).value_or("");
    comment.author = first(value, {"author"}, readAuthor).value_or("");
    comment.colour = first(value, {"color", "colour"}, readLabel);
    comment.resolved = first(value, {"resolved", "completed"}, readBoolean).value_or(false);
    comment.parentId = first(value, {"parentId"}, readIdentifier);
    draft.sequence = first(value, {"sequenceId"}, readIdentifier);
    draft.createdAt = first(value, {"createdAt"}, readLabel);
    draft.updatedAt = first(value, {"updatedAt"}, readLabel);
    draft.raw = written(value);
    return draft;
}

} // namespace

std::optional<CommentDraft> readComment(Json const& value) {
    auto const id = first(value, {"id", "commentId"}, readIdentifier);
    if (!id)
        return {};
    auto draft = readMembers(value);
    draft.comment.id = *id;
    if (draft.comment.start < 0 || draft.comment.parentId == id || !readReplies(value, draft))
        return {};
    return draft;
}

std::optional<CommentDraft> readCommentMessage(Json message) {
    if (!message.is_object())
        return {};
    for (auto const* key : {"command", "requestId", "resolveId"})
        message.erase(key);
    return readComment(message);
}

std::optional<std::vector<CommentDraft>> readComments(Json const& list) {
    if (!list.is_array())
        return {};
    auto drafts = std::vector<CommentDraft>{};
    drafts.reserve(list.size());
    for (auto const& entry : list) {
        auto draft = readComment(entry);
        if (!draft)
            return {};
        drafts.push_back(std::move(*draft));
    }
    return drafts;
}

std::optional<std::string> readIdentifier(Json const& value) {
    // Beyond this two whole numbers may be one and the same floating-point number.
    constexpr auto largestWhole = 9007199254740992.0;
    auto const number = readNumber(value);
    if (!number)
        return readLabel(value);
    if (*number != std::floor(*number) || std::abs(*number) > largestWhole)
        return {};
    return std::to_string(static_cast<long long>(*number));
}

std::optional<double> readNumber(Json const& value) {
    if (!value.is_number() || !std::isfinite(value.get<double>()))
        return {};
    return value.get<double>();
}

Json const& member(Json const& object, char const* key) {
    static auto const none = Json{};
    auto const found = object.is_object() ? object.find(key) : object.end();
    return found != object.end() ? *found : none;
}

} // namespace workbench
