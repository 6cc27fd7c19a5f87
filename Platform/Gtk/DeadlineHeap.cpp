#include "Platform/Gtk/DeadlineHeap.h"

#include "FcpExtension/Delay.h"
#include "Platform/Gtk/TurnBudget.h"

#include <algorithm>
#include <chrono>
#include <tuple>
#include <utility>

namespace fcp {

DeadlineHeap::DeadlineHeap(GMainContext* context)
    : source(context, [this] { runTurn(); }) {}

bool DeadlineHeap::later(Entry const& a, Entry const& b) {
    return std::tie(a.time, a.number) > std::tie(b.time, b.number);
}

void DeadlineHeap::after(Seconds delay, std::function<void()> task) {
    auto const time = g_get_monotonic_time() + ticksOf<std::chrono::microseconds>(delay);
    entries.push_back({time, nextNumber++, std::move(task)});
    std::ranges::push_heap(entries, later);
    waitForEarliest();
}

void DeadlineHeap::waitForEarliest() {
    if (entries.empty())
        source.rest();
    else
        source.readyAt(entries.front().time);
}

// What a task adds waits for a later turn, though it may be due already.
void DeadlineHeap::runTurn() {
    auto const now = g_get_monotonic_time();
    auto const firstAdded = nextNumber;
    TurnBudget const budget;
    while (!entries.empty() && entries.front().time <= now && entries.front().number < firstAdded &&
           !budget.spent()) {
        takeEarliest().task();
    }
    waitForEarliest();
}

DeadlineHeap::Entry DeadlineHeap::takeEarliest() {
    std::ranges::pop_heap(entries, later);
    auto earliest = std::move(entries.back());
    entries.pop_back();
    return earliest;
}

} // namespace fcp
