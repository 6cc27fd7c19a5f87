#include "Platform/Gtk/PostQueue.h"

#include "Platform/Gtk/TurnBudget.h"

#include <utility>

namespace fcp {

PostQueue::PostQueue(GMainContext* context)
    : source(context, [this] { runTurn(); }) {}

void PostQueue::post(std::function<void()> task) {
    std::lock_guard const guard(mutex);
    tasks.push_back(std::move(task));
    if (tasks.size() == 1)
        source.readyNow();
}

// Counts before it starts: what a task posts waits for a later turn.
void PostQueue::runTurn() {
    TurnBudget const budget;
    for (auto owed = size(); owed > 0 && !budget.spent(); --owed) {
        if (auto const task = take())
            task();
    }
}

std::size_t PostQueue::size() {
    std::lock_guard const guard(mutex);
    return tasks.size();
}

// None when a loop inside a task was quicker.
std::function<void()> PostQueue::take() {
    std::lock_guard const guard(mutex);
    if (tasks.empty())
        return nullptr;
    auto task = std::move(tasks.front());
    tasks.pop_front();
    if (tasks.empty())
        source.rest();
    return task;
}

} // namespace fcp
