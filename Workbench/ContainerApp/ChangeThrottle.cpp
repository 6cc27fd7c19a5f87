#include "Workbench/ContainerApp/ChangeThrottle.h"

#include <algorithm>
#include <utility>

namespace workbench {

void ChangeThrottle::note(Change change) {
    states[std::move(change.sequenceKey)].waiting = change.revision;
}

std::vector<ChangeThrottle::Change> ChangeThrottle::takeDue(Time now) {
    auto due = std::vector<Change>{};
    for (auto& [key, state] : states) {
        if (!state.waiting || state.earliest > now)
            continue;
        due.push_back({key, *std::exchange(state.waiting, {})});
        state.earliest = now + interval;
    }
    std::erase_if(states,
                  [now](auto const& entry) { return !entry.second.waiting && entry.second.earliest <= now; });
    return due;
}

std::optional<ChangeThrottle::Time> ChangeThrottle::nextDue() const {
    auto next = std::optional<Time>{};
    for (auto const& [key, state] : states)
        if (state.waiting)
            next = next ? std::min(*next, state.earliest) : state.earliest;
    return next;
}

} // namespace workbench
