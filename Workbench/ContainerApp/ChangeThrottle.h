#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

// Thins out the news of each sequence: the first at once, then at most one in 50 ms, and the last one always.
// Time comes in as an argument.
class ChangeThrottle {
public:
    using Time = std::chrono::steady_clock::time_point;

    static constexpr auto interval = std::chrono::milliseconds{50};

    struct Change {
        std::string sequenceKey;
        std::uint64_t revision = 0;

        friend bool operator==(Change const&, Change const&) = default;
    };

    void note(Change change);

    // What may be told at `now`; it counts as told.
    [[nodiscard]] std::vector<Change> takeDue(Time now);

    // When something is next due; none when nothing waits.
    [[nodiscard]] std::optional<Time> nextDue() const;

private:
    struct State {
        std::optional<std::uint64_t> waiting;
        Time earliest = Time::min();
    };

    std::map<std::string, State> states;
};

} // namespace workbench
