#include "Workbench/ContainerApp/CommentStore.h"

#include "Workbench/ContainerApp/CommentList.h"
#include "Workbench/ContainerApp/Json.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace workbench {

namespace {

constexpr std::string_view inOrderOfTime = " ORDER BY start_s, position, id";

// A page that gives no dates must not lose the day of the first arrival with every correction.
constexpr std::string_view upsertSql = R"(
INSERT INTO comments(sequence_id, id, parent_id, author, body, start_s, duration_s, colour, resolved,
    created_at, updated_at, raw, position)
VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9,
    coalesce(?10, strftime('%Y-%m-%dT%H:%M:%fZ', 'now')), coalesce(?11, strftime('%Y-%m-%dT%H:%M:%fZ', 'now')), ?12, ?13)
ON CONFLICT(sequence_id, id) DO UPDATE SET
    parent_id = excluded.parent_id, author = excluded.author, body = excluded.body, start_s = excluded.start_s,
    duration_s = excluded.duration_s, colour = excluded.colour, resolved = excluded.resolved,
    created_at = coalesce(?10, created_at), updated_at = excluded.updated_at, raw = excluded.raw,
    position = excluded.position)";

constexpr std::string_view touchSql = R"(
UPDATE comments SET updated_at = strftime('%Y-%m-%dT%H:%M:%fZ', 'now') WHERE sequence_id = ?1 AND id = ?2)";

constexpr std::string_view removeOthersSql = R"(
DELETE FROM comments WHERE sequence_id = ?1 AND id NOT IN (SELECT value FROM json_each(?2)))";

// The columns that `commentIn` reads.
std::string selecting(std::string_view which, std::string_view order = {}) {
    auto sql = std::string{"SELECT id, parent_id, author, body, start_s, duration_s, colour, resolved "
                           "FROM comments WHERE sequence_id = ?1"};
    sql += which;
    sql += order;
    return sql;
}

// Comment ?2 and all that answers it. UNION, not UNION ALL: it ends also when replies run in a circle.
std::string withTree(std::string_view statement) {
    auto sql =
        std::string{"WITH RECURSIVE tree(id) AS (SELECT ?2 UNION SELECT c.id FROM comments c JOIN tree "
                    "ON c.parent_id = tree.id WHERE c.sequence_id = ?1) "};
    sql += statement;
    return sql;
}

// A sequence that no editor ever described was named by a page.
constexpr std::string_view findPagePlaceSql =
    "SELECT s.key FROM sequences s JOIN comments c ON c.sequence_id = s.id AND c.id = ?1 "
    "WHERE s.media_uri IS NULL AND s.key <> ?2";

Comment commentIn(Rows const& rows) {
    return {.id = rows.text(0),
            .parentId = rows.optionalText(1),
            .author = rows.text(2),
            .text = rows.text(3),
            .start = rows.real(4),
            .duration = rows.real(5),
            .colour = rows.optionalText(6),
            .resolved = rows.integer(7) != 0};
}

std::vector<Comment> allOf(Rows& rows) {
    auto comments = std::vector<Comment>{};
    while (rows.next())
        comments.push_back(commentIn(rows));
    return comments;
}

std::string identifiersAsJson(std::vector<CommentDraft> const& list) {
    auto identifiers = Json::array();
    for (auto const& draft : list)
        identifiers.push_back(draft.comment.id);
    return identifiers.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace

CommentStore::CommentStore(Database& theDatabase, SequenceStore& theSequences)
    : database{theDatabase}
    , sequences{theSequences}
    , upsert{database, upsertSql}
    , touch{database, touchSql}
    , removeOthers{database, removeOthersSql}
    , removeAll{database, "DELETE FROM comments WHERE sequence_id = ?1"}
    , removeWithReplies{database, withTree("DELETE FROM comments WHERE sequence_id = ?1 AND id IN tree")}
    , readChildren{database, "SELECT id FROM comments WHERE sequence_id = ?1 AND parent_id = ?2"}
    , findPagePlace{database, findPagePlaceSql}
    , readPlace{database, "SELECT start_s, position FROM comments WHERE sequence_id = ?1 AND id = ?2"}
    , readAll{database, selecting(inOrderOfTime)}
    , readMarkers{database, selecting(" AND parent_id IS NULL", inOrderOfTime)}
    , readReplies{database, withTree(selecting(" AND id IN tree AND id <> ?2", inOrderOfTime))}
    , readOne{database, selecting(" AND id = ?2")}
    , readRaw{database, "SELECT raw FROM comments WHERE sequence_id = ?1 AND id = ?2"}
    , countAll{database, "SELECT count(*) FROM comments"} {}

bool CommentStore::sync(CommentDraft const& draft) {
    auto transaction = Transaction{database};
    auto const key = placeOf(draft);
    auto const sequence = sequences.ensure(key);
    auto const list =
        flatten({draft}, [this, sequence](std::string const& id) { return startOf(sequence, id); });
    if (!list)
        return false;
    removeMissingReplies(sequence, *list);
    for (auto const& each : *list) {
        write(sequence, each, positionOf(sequence, each.comment.id));
        sequences.raiseLongest(sequence, each.comment.duration);
    }
    // An answer is news of what it answers.
    if (draft.comment.parentId)
        touch.run(sequence, *draft.comment.parentId);
    auto const revision = sequences.bump(sequence);
    transaction.commit();
    observer(key, revision);
    return true;
}

bool CommentStore::syncAll(std::vector<CommentDraft> drafts) {
    auto lists = std::map<std::string, List>{};
    if (drafts.empty())
        lists[sequences.activeKey()];
    for (auto& draft : drafts)
        lists[draft.sequence.value_or(sequences.activeKey())].push_back(std::move(draft));
    auto transaction = Transaction{database};
    auto revisions = std::map<std::string, std::uint64_t>{};
    for (auto& [key, drafted] : lists) {
        auto const list =
            flatten(std::move(drafted), [](std::string const&) { return std::optional<double>{}; });
        if (!list)
            return false;
        auto const sequence = sequences.ensure(key);
        writeWhole(sequence, *list);
        revisions[key] = sequences.bump(sequence);
    }
    transaction.commit();
    for (auto const& [key, revision] : revisions)
        observer(key, revision);
    return true;
}

void CommentStore::merge(std::string const& sequenceKey, std::vector<CommentDraft> const& drafts) {
    if (drafts.empty())
        return;
    auto transaction = Transaction{database};
    auto const sequence = sequences.ensure(sequenceKey);
    for (auto const& draft : drafts)
        write(sequence, draft, positionOf(sequence, draft.comment.id));
    auto const revision = sequences.bump(sequence);
    transaction.commit();
    observer(sequenceKey, revision);
}

void CommentStore::remove(std::string const& id) {
    auto transaction = Transaction{database};
    auto key = sequences.activeKey();
    auto sequence = sequences.find(key);
    if (!sequence || !startOf(*sequence, id)) {
        auto const place = pagePlaceOf(id);
        if (!place)
            return;
        key = *place;
        sequence = sequences.find(key);
    }
    removeTree(*sequence, id);
    auto const revision = sequences.bump(*sequence);
    transaction.commit();
    observer(key, revision);
}

void CommentStore::clear() {
    auto transaction = Transaction{database};
    auto const key = sequences.activeKey();
    auto const sequence = sequences.find(key);
    if (!sequence || removeAll.run(*sequence) == 0)
        return;
    sequences.restart(*sequence, 0, 0);
    auto const revision = sequences.bump(*sequence);
    transaction.commit();
    observer(key, revision);
}

std::vector<Comment> CommentStore::comments(std::string const& sequenceKey) {
    auto rows = readAll.query(sequences.find(sequenceKey));
    return allOf(rows);
}

std::vector<Comment> CommentStore::markers(std::string const& sequenceKey) {
    auto rows = readMarkers.query(sequences.find(sequenceKey));
    return allOf(rows);
}

std::vector<Comment> CommentStore::replies(std::int64_t sequence, std::string const& id) {
    auto rows = readReplies.query(sequence, id);
    return allOf(rows);
}

std::optional<Comment> CommentStore::comment(std::int64_t sequence, std::string const& id) {
    auto rows = readOne.query(sequence, id);
    if (!rows.next())
        return {};
    return commentIn(rows);
}

std::string CommentStore::raw(std::string const& sequenceKey, std::string const& id) {
    auto rows = readRaw.query(sequences.find(sequenceKey), id);
    return rows.next() ? rows.text(0) : "{}";
}

std::int64_t CommentStore::count() {
    return countAll.number();
}

void CommentStore::write(std::int64_t sequence, CommentDraft const& draft, std::int64_t position) {
    auto const& comment = draft.comment;
    upsert.run(sequence, comment.id, comment.parentId, comment.author, comment.text, comment.start,
               comment.duration, comment.colour, comment.resolved, draft.createdAt, draft.updatedAt,
               draft.raw, position);
    sequences.raiseLongest(sequence, comment.duration);
}

void CommentStore::writeWhole(std::int64_t sequence, List const& list) {
    removeOthers.run(sequence, identifiersAsJson(list));
    auto position = std::int64_t{0};
    auto longest = 0.0;
    for (auto const& draft : list) {
        write(sequence, draft, position++);
        longest = std::max(longest, draft.comment.duration);
    }
    sequences.restart(sequence, position, longest);
}

void CommentStore::removeMissingReplies(std::int64_t sequence, List const& list) {
    auto kept = std::unordered_set<std::string>{};
    for (auto const& draft : list)
        kept.insert(draft.comment.id);
    auto gone = std::vector<std::string>{};
    for (auto const& draft : list) {
        if (!draft.hasReplies)
            continue;
        auto rows = readChildren.query(sequence, draft.comment.id);
        while (rows.next())
            if (!kept.contains(rows.text(0)))
                gone.push_back(rows.text(0));
    }
    for (auto const& id : gone)
        removeTree(sequence, id);
}

void CommentStore::removeTree(std::int64_t sequence, std::string const& id) {
    removeWithReplies.run(sequence, id);
}

std::string CommentStore::placeOf(CommentDraft const& draft) {
    if (draft.sequence)
        return *draft.sequence;
    auto active = sequences.activeKey();
    if (!draft.comment.parentId)
        return active;
    auto const sequence = sequences.find(active);
    if (sequence && startOf(*sequence, *draft.comment.parentId))
        return active;
    return pagePlaceOf(*draft.comment.parentId).value_or(active);
}

// Where a page put it under a key of its own. None when that is in doubt: the wrong comment must not be
// touched.
std::optional<std::string> CommentStore::pagePlaceOf(std::string const& id) {
    auto rows = findPagePlace.query(id, std::string{defaultSequence});
    if (!rows.next())
        return {};
    auto key = rows.text(0);
    return rows.next() ? std::nullopt : std::optional{key};
}

std::optional<double> CommentStore::startOf(std::int64_t sequence, std::string const& id) {
    auto rows = readPlace.query(sequence, id);
    if (!rows.next())
        return {};
    return rows.real(0);
}

std::int64_t CommentStore::positionOf(std::int64_t sequence, std::string const& id) {
    auto rows = readPlace.query(sequence, id);
    return rows.next() ? rows.integer(1) : sequences.takePosition(sequence);
}

} // namespace workbench
