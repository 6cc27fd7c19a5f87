#pragma once

#include "Workbench/ContainerApp/CommandServer.h"
#include "Workbench/ContainerApp/MarkerLookup.h"

#include <functional>
#include <string>
#include <unordered_map>

namespace workbench {

class ExportDesk;
class FolderChooser;
class LinkOpener;

// Does what a command asks for. Main thread only.
class CommandHandler {
public:
    struct Parts {
        CommentStore& comments;
        MarkerLookup& markers;
        ExportDesk& exports;
        FolderChooser& folders;
        LinkOpener& links;
    };

    // Told, in a sentence, why something could not be done.
    using Problem = std::function<void(std::string const& sentence)>;

    CommandHandler(Parts parts, Problem problem);

    CommandHandler(CommandHandler const&) = delete;
    CommandHandler& operator=(CommandHandler const&) = delete;

    // Answers every command, at once or later. Arguments that are missing or of a wrong type, unknown
    // commands and failures of the store get the answer for "nothing was done".
    void handle(Command const& command);

private:
    using Operation = void (CommandHandler::*)(Json const& arguments, std::shared_ptr<Reply> const& reply);
    using Shared = std::shared_ptr<Reply>;

    void openURL(Json const& arguments, Shared const& reply);
    void syncComment(Json const& arguments, Shared const& reply);
    void deleteComment(Json const& arguments, Shared const& reply);
    void syncAllComments(Json const& arguments, Shared const& reply);
    void clearAllMarkers(Json const& arguments, Shared const& reply);
    void startExport(Json const& arguments, Shared const& reply);
    void cancelExport(Json const& arguments, Shared const& reply);
    void selectOutputFolder(Json const& arguments, Shared const& reply);
    void getMarkerAtTime(Json const& arguments, Shared const& reply);

    Parts parts;
    Problem problem;
    std::unordered_map<std::string, Operation> const operations;
};

// What the page learns of a marker. Replies that would make the answer too large for the bus are left out.
[[nodiscard]] Json describe(Marker const& marker);

} // namespace workbench
