#pragma once

#include "Workbench/ContainerApp/HostSequence.h"
#include "Workbench/ContainerApp/Statement.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

// The sequences that the store knows, by the key that editor or page give them. Throws DatabaseError.
class SequenceStore {
public:
    explicit SequenceStore(Database& database);

    // The one that is open in the editor; none without an editor. What it says is kept for the time when it
    // is gone.
    void setActive(std::optional<HostSequence> sequence);

    // Never empty.
    [[nodiscard]] std::string activeKey() const;

    [[nodiscard]] std::optional<std::int64_t> find(std::string const& key);

    // Those that hold comments or have held some, by their names.
    [[nodiscard]] std::vector<HostSequence> all();

    // Within the caller's transaction.
    [[nodiscard]] std::int64_t ensure(std::string const& key);

    // Counts one more write and returns the new revision. Within the caller's transaction.
    std::uint64_t bump(std::int64_t sequence);

    // 0 for an unknown one.
    [[nodiscard]] std::uint64_t revision(std::string const& key);

    // What the editor says of a sequence, or said when it was last open; none for an unknown one.
    [[nodiscard]] std::optional<HostSequence> description(std::string const& key);

    // The next free place in the list, taken. Within the caller's transaction.
    [[nodiscard]] std::int64_t takePosition(std::int64_t sequence);

    // An upper bound of the durations in the sequence, which a new comment may raise.
    void raiseLongest(std::int64_t sequence, double duration);
    [[nodiscard]] double longest(std::int64_t sequence);

    // The list was written anew: what `takePosition` gives next and what `longest` says. Within the caller's
    // transaction.
    void restart(std::int64_t sequence, std::int64_t nextPosition, double longestDuration);

private:
    [[nodiscard]] std::optional<HostSequence> stored(std::string const& key);
    void describe(HostSequence const& sequence);

    std::optional<HostSequence> active;
    Statement findKey;
    Statement insertKey;
    Statement bumpRevision;
    Statement readRevision;
    Statement updateDescription;
    Statement readDescription;
    Statement updatePosition;
    Statement updateLongest;
    Statement readLongest;
    Statement resetList;
    Statement readKeys;
};

} // namespace workbench
