#include "Workbench/ContainerApp/CommandHandler.h"

#include "Workbench/ContainerApp/CommentReader.h"
#include "Workbench/ContainerApp/ExportDesk.h"
#include "Workbench/ContainerApp/FolderChooser.h"
#include "Workbench/ContainerApp/LinkOpener.h"

#include <exception>
#include <utility>

namespace workbench {

namespace {

// The tolerance of a request that names none.
constexpr double defaultThreshold = 0.5;

// All replies of an answer together; the bus ends the connection of whoever sends far more.
constexpr std::size_t largestReplies = 8UL * 1024 * 1024;

Json describeReply(Comment const& reply) {
    return {{"id", reply.id},
            {"parentId", reply.parentId.value_or("")},
            {"text", reply.text},
            {"author", reply.author}};
}

} // namespace

CommandHandler::CommandHandler(Parts theParts, Problem theProblem)
    : parts{theParts}
    , problem{std::move(theProblem)}
    , operations{{"openURL", &CommandHandler::openURL},
                 {"syncComment", &CommandHandler::syncComment},
                 {"deleteComment", &CommandHandler::deleteComment},
                 {"syncAllComments", &CommandHandler::syncAllComments},
                 {"clearAllMarkers", &CommandHandler::clearAllMarkers},
                 {"startExport", &CommandHandler::startExport},
                 {"cancelExport", &CommandHandler::cancelExport},
                 {"selectOutputFolder", &CommandHandler::selectOutputFolder},
                 {"getMarkerAtTime", &CommandHandler::getMarkerAtTime}} {}

void CommandHandler::handle(Command const& command) {
    auto const operation = operations.find(command.name);
    if (operation == operations.end())
        return;
    try {
        (this->*operation->second)(command.arguments, command.reply);
    } catch (std::exception const& error) {
        problem(command.name + " failed: " + error.what());
    }
}

void CommandHandler::openURL(Json const& arguments, Shared const& reply) {
    auto const& url = member(arguments, "url");
    if (url.is_string())
        parts.links.open(url.get<std::string>(), [reply](bool opened) { reply->resolve(opened); });
}

void CommandHandler::syncComment(Json const& arguments, Shared const& reply) {
    auto const draft = readCommentMessage(member(arguments, "comment"));
    if (draft && parts.comments.sync(*draft))
        reply->resolve(true);
}

void CommandHandler::deleteComment(Json const& arguments, Shared const& reply) {
    auto const id = readIdentifier(member(arguments, "commentId"));
    if (!id)
        return;
    parts.comments.remove(*id);
    reply->resolve(true);
}

void CommandHandler::syncAllComments(Json const& arguments, Shared const& reply) {
    auto drafts = readComments(member(arguments, "comments"));
    if (drafts && parts.comments.syncAll(std::move(*drafts)))
        reply->resolve(true);
}

void CommandHandler::clearAllMarkers(Json const&, Shared const& reply) {
    parts.comments.clear();
    reply->resolve(true);
}

void CommandHandler::startExport(Json const& arguments, Shared const& reply) {
    auto const refusal = parts.exports.start(arguments);
    if (refusal)
        problem("the export was not started: " + *refusal);
    reply->resolve(!refusal);
}

void CommandHandler::cancelExport(Json const&, Shared const& reply) {
    parts.exports.cancel([reply](bool cancelled) { reply->resolve(cancelled); });
}

void CommandHandler::selectOutputFolder(Json const&, Shared const& reply) {
    parts.folders.choose([reply](std::optional<std::string> const& folder) {
        reply->resolve(folder ? Json(*folder) : Json{});
    });
}

void CommandHandler::getMarkerAtTime(Json const& arguments, Shared const& reply) {
    auto const seconds = readNumber(member(arguments, "seconds"));
    if (!seconds)
        return;
    auto const& tolerance = member(arguments, "threshold");
    auto const threshold = tolerance.is_number() ? tolerance.get<double>() : defaultThreshold;
    auto const marker = parts.markers.at(*seconds, threshold);
    reply->resolve(marker ? describe(*marker) : Json{});
}

Json describe(Marker const& marker) {
    auto const& comment = marker.comment;
    auto replies = Json::array();
    auto size = std::size_t{0};
    for (auto const& reply : marker.replies) {
        size += reply.id.size() + reply.text.size() + reply.author.size();
        if (size <= largestReplies)
            replies.push_back(describeReply(reply));
    }
    return {{"id", comment.id},
            {"text", comment.text},
            {"author", comment.author},
            {"start", comment.start},
            {"duration", comment.duration},
            {"colour", comment.colour ? Json(*comment.colour) : Json{}},
            {"resolved", comment.resolved},
            {"replies", std::move(replies)}};
}

} // namespace workbench
