#include "Workbench/ContainerApp/SequenceStore.h"

namespace workbench {

SequenceStore::SequenceStore(Database& database)
    : findKey{database, "SELECT id FROM sequences WHERE key = ?1"}
    , insertKey{database, "INSERT INTO sequences(key) VALUES(?1) ON CONFLICT(key) DO NOTHING"}
    , bumpRevision{database, "UPDATE sequences SET revision = revision + 1 WHERE id = ?1 RETURNING revision"}
    , readRevision{database, "SELECT revision FROM sequences WHERE key = ?1"}
    , updateDescription{database, "UPDATE sequences SET name = ?2, media_uri = ?3, rate_num = ?4, rate_den = "
                                  "?5, duration_frames = ?6, "
                                  "start_frame = ?7, drop_frame = ?8 WHERE key = ?1"}
    , readDescription{database,
                      "SELECT name, media_uri, rate_num, rate_den, duration_frames, start_frame, drop_frame "
                      "FROM sequences WHERE key = ?1"}
    , updatePosition{database, "UPDATE sequences SET next_position = next_position + 1 WHERE id = ?1 "
                               "RETURNING next_position - 1"}
    , updateLongest{database, "UPDATE sequences SET longest_s = ?2 WHERE id = ?1 AND longest_s < ?2"}
    , readLongest{database, "SELECT longest_s FROM sequences WHERE id = ?1"}
    , resetList{database, "UPDATE sequences SET next_position = ?2, longest_s = ?3 WHERE id = ?1"}
    , readKeys{database, "SELECT key FROM sequences ORDER BY name, key"} {}

void SequenceStore::setActive(std::optional<HostSequence> sequence) {
    active = std::move(sequence);
    if (active && find(active->key) && stored(active->key) != active)
        describe(*active);
}

std::string SequenceStore::activeKey() const {
    return active ? active->key : defaultSequence;
}

std::optional<std::int64_t> SequenceStore::find(std::string const& key) {
    auto rows = findKey.query(key);
    if (!rows.next())
        return {};
    return rows.integer(0);
}

std::int64_t SequenceStore::ensure(std::string const& key) {
    if (auto const known = find(key))
        return *known;
    insertKey.run(key);
    if (active && active->key == key)
        describe(*active);
    return find(key).value();
}

std::uint64_t SequenceStore::bump(std::int64_t sequence) {
    return static_cast<std::uint64_t>(bumpRevision.number(sequence));
}

std::uint64_t SequenceStore::revision(std::string const& key) {
    return static_cast<std::uint64_t>(readRevision.number(key));
}

void SequenceStore::describe(HostSequence const& sequence) {
    auto const rate = sequence.rate.value_or(FrameRate{0, 1});
    updateDescription.run(sequence.key, sequence.name, sequence.uri, rate.numerator, rate.denominator,
                          sequence.durationFrames, sequence.firstFrame, sequence.dropFrame);
}

std::optional<HostSequence> SequenceStore::description(std::string const& key) {
    return active && active->key == key ? active : stored(key);
}

std::vector<HostSequence> SequenceStore::all() {
    auto sequences = std::vector<HostSequence>{};
    auto rows = readKeys.query();
    while (rows.next())
        if (auto sequence = description(rows.text(0)))
            sequences.push_back(std::move(*sequence));
    return sequences;
}

std::optional<HostSequence> SequenceStore::stored(std::string const& key) {
    auto rows = readDescription.query(key);
    if (!rows.next())
        return {};
    auto sequence = HostSequence{};
    sequence.key = key;
    sequence.name = rows.text(0);
    sequence.uri = rows.text(1);
    if (rows.integer(2) > 0)
        sequence.rate = FrameRate{rows.integer(2), rows.integer(3)};
    sequence.durationFrames = rows.integer(4);
    sequence.firstFrame = rows.integer(5);
    sequence.dropFrame = rows.integer(6) != 0;
    return sequence;
}

std::int64_t SequenceStore::takePosition(std::int64_t sequence) {
    return updatePosition.number(sequence);
}

void SequenceStore::raiseLongest(std::int64_t sequence, double duration) {
    updateLongest.run(sequence, duration);
}

double SequenceStore::longest(std::int64_t sequence) {
    auto rows = readLongest.query(sequence);
    return rows.next() ? rows.real(0) : 0;
}

void SequenceStore::restart(std::int64_t sequence, std::int64_t nextPosition, double longestDuration) {
    resetList.run(sequence, nextPosition, longestDuration);
}

} // namespace workbench
