#include "Workbench/ContainerApp/MarkerLookup.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace workbench {

namespace {

// Keeps a marker whose range just touches the window, whatever the last bit of the sums says.
constexpr double slack = 1e-6;

double distanceToRange(MarkerCandidate const& marker, double seconds) {
    return std::max({0.0, marker.start - seconds, seconds - (marker.start + marker.duration)});
}

using Rank = std::tuple<double, double, double, std::int64_t, std::string const&>;

Rank rank(MarkerCandidate const& marker, double seconds) {
    return {distanceToRange(marker, seconds), std::abs(marker.start - seconds), marker.start, marker.position,
            marker.id};
}

} // namespace

bool isNearer(MarkerCandidate const& a, MarkerCandidate const& b, double seconds) {
    return rank(a, seconds) < rank(b, seconds);
}

MarkerLookup::MarkerLookup(Database& database, SequenceStore& theSequences, CommentStore& theComments)
    : sequences{theSequences}
    , comments{theComments}
    , candidates{database, "SELECT start_s, duration_s, position, id FROM comments WHERE sequence_id = ?1 "
                           "AND parent_id IS NULL "
                           "AND start_s BETWEEN ?2 AND ?3 AND start_s + duration_s >= ?4"} {}

std::optional<Marker> MarkerLookup::at(double seconds, double threshold) {
    auto const sequence = sequences.find(sequences.activeKey());
    auto const found = sequence ? nearest(*sequence, seconds, threshold) : std::nullopt;
    if (!found)
        return {};
    return Marker{comments.comment(*sequence, found->id).value(), comments.replies(*sequence, found->id)};
}

std::optional<MarkerCandidate> MarkerLookup::nearest(std::int64_t sequence, double seconds,
                                                     double threshold) {
    auto const from = seconds - threshold;
    auto const earliestStart = from - sequences.longest(sequence) - slack;
    auto rows = candidates.query(sequence, earliestStart, seconds + threshold, from);
    auto best = std::optional<MarkerCandidate>{};
    while (rows.next()) {
        auto candidate = MarkerCandidate{
            .start = rows.real(0), .duration = rows.real(1), .position = rows.integer(2), .id = rows.text(3)};
        if (!best || isNearer(candidate, *best, seconds))
            best = std::move(candidate);
    }
    return best;
}

} // namespace workbench
