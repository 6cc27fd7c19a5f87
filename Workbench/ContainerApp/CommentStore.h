#pragma once

#include "Workbench/ContainerApp/Comment.h"
#include "Workbench/ContainerApp/SequenceStore.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

// The comments of every sequence. Each write is one transaction, whole or not at all, and is told to the
// observer once it is committed. Throws DatabaseError; nothing has changed then.
class CommentStore {
public:
    using Observer = std::function<void(std::string const& sequenceKey, std::uint64_t revision)>;

    CommentStore(Database& database, SequenceStore& sequences);

    CommentStore(CommentStore const&) = delete;
    CommentStore& operator=(CommentStore const&) = delete;

    void setObserver(Observer theObserver) { observer = std::move(theObserver); }

    // Inserts the comment or replaces it by its identifier, in the sequence that it names or else in the
    // active one. Replies that come with it replace those that are known. False for a draft without a time.
    bool sync(CommentDraft const& draft);

    // Makes the list of each sequence that the drafts name (the active one, where they name none) exactly the
    // drafts. False, and nothing is changed, when one of them lacks a time or an identifier stands twice in
    // one sequence.
    bool syncAll(std::vector<CommentDraft> drafts);

    // Inserts the drafts, which all have a time, or replaces what has their identifiers, in one sequence.
    // What else it holds stays.
    void merge(std::string const& sequenceKey, std::vector<CommentDraft> const& drafts);

    // Removes a comment of the active sequence with all that answers it. What a page had put into a sequence
    // of its own naming is found there. Unknown identifiers change nothing.
    void remove(std::string const& id);

    // Empties the active sequence.
    void clear();

    // In the order of time, replies among them.
    [[nodiscard]] std::vector<Comment> comments(std::string const& sequenceKey);

    // The comments that are no replies, in the order of time.
    [[nodiscard]] std::vector<Comment> markers(std::string const& sequenceKey);

    // All that answers a comment, however deep, in the order of time.
    [[nodiscard]] std::vector<Comment> replies(std::int64_t sequence, std::string const& id);

    [[nodiscard]] std::optional<Comment> comment(std::int64_t sequence, std::string const& id);

    // What came of a comment, as JSON; an empty object for an unknown one.
    [[nodiscard]] std::string raw(std::string const& sequenceKey, std::string const& id);

    // Of all sequences, replies included.
    [[nodiscard]] std::int64_t count();

private:
    using List = std::vector<CommentDraft>;

    void write(std::int64_t sequence, CommentDraft const& draft, std::int64_t position);
    void writeWhole(std::int64_t sequence, List const& list);
    void removeMissingReplies(std::int64_t sequence, List const& list);
    void removeTree(std::int64_t sequence, std::string const& id);
    [[nodiscard]] std::string placeOf(CommentDraft const& draft);
    [[nodiscard]] std::optional<std::string> pagePlaceOf(std::string const& id);
    [[nodiscard]] std::optional<double> startOf(std::int64_t sequence, std::string const& id);
    [[nodiscard]] std::int64_t positionOf(std::int64_t sequence, std::string const& id);

    Database& database;
    SequenceStore& sequences;
    Observer observer;
    Statement upsert;
    Statement touch;
    Statement removeOthers;
    Statement removeAll;
    Statement removeWithReplies;
    Statement readChildren;
    Statement findPagePlace;
    Statement readPlace;
    Statement readAll;
    Statement readMarkers;
    Statement readReplies;
    Statement readOne;
    Statement readRaw;
    Statement countAll;
};

} // namespace workbench
