#pragma once

#include "Platform/Gtk/ReadyTimeSource.h"
#include "Ports/MainLoop.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace fcp {

// Tasks that are owed at a moment and cannot be cancelled, behind one source. GLib walks all its sources on
// each turn, so that a source per deadline would make every turn pay for every request that waits; here only
// the earliest one is looked at. The context's thread only.
class DeadlineHeap {
public:
    explicit DeadlineHeap(GMainContext* context);

    // Equal moments keep the order of the calls.
    void after(Seconds delay, std::function<void()> task);

private:
    struct Entry {
        std::int64_t time; // microseconds of g_get_monotonic_time
        std::uint64_t number;
        std::function<void()> task;
    };

    [[nodiscard]] static bool later(Entry const& a, Entry const& b);
    void runTurn();
    void waitForEarliest();
    [[nodiscard]] Entry takeEarliest();

    std::vector<Entry> entries; // a heap, the earliest in front
    std::uint64_t nextNumber = 0;
    ReadyTimeSource source;
};

} // namespace fcp
