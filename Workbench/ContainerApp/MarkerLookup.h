#pragma once

#include "Workbench/ContainerApp/CommentStore.h"

#include <cstdint>
#include <optional>
#include <string>

namespace workbench {

// A marker with all that answers it.
struct Marker {
    Comment comment;
    std::vector<Comment> replies;
};

// What the choice among markers looks at.
struct MarkerCandidate {
    double start = 0;
    double duration = 0;
    std::int64_t position = 0;
    std::string id;
};

// True when `a` is chosen before `b` at `seconds`: by distance to the range (0 inside it), then distance to
// the start, earlier start, place in the list, identifier. Two markers of one sequence are never equal.
[[nodiscard]] bool isNearer(MarkerCandidate const& a, MarkerCandidate const& b, double seconds);

// Finds the marker at a time. Looks only at markers that can reach it: ten thousand elsewhere cost nothing.
class MarkerLookup {
public:
    MarkerLookup(Database& database, SequenceStore& sequences, CommentStore& comments);

    // In the active sequence, among those whose range comes within `threshold` seconds of `seconds`. Throws
    // DatabaseError.
    [[nodiscard]] std::optional<Marker> at(double seconds, double threshold);

    // What the searches since the last call cost, in steps of the database's machine.
    [[nodiscard]] int takeSteps() { return candidates.takeSteps(); }

private:
    [[nodiscard]] std::optional<MarkerCandidate> nearest(std::int64_t sequence, double seconds,
                                                         double threshold);

    SequenceStore& sequences;
    CommentStore& comments;
    Statement candidates;
};

} // namespace workbench
