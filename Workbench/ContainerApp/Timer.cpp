#include "Workbench/ContainerApp/Timer.h"

#include <glib.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace workbench {

namespace {

using Task = std::function<void()>;

int runTask(void* task) {
    (*static_cast<Task*>(task))();
    return G_SOURCE_REMOVE;
}

void deleteTask(void* task) {
    std::unique_ptr<Task>(static_cast<Task*>(task));
}

} // namespace

Timer::~Timer() {
    cancel();
}

void Timer::start(std::chrono::milliseconds delay, std::function<void()> theTask) {
    cancel();
    task = std::move(theTask);
    source = g_timeout_add(static_cast<unsigned>(std::max<long>(delay.count(), 0)), fire, this);
}

void Timer::cancel() {
    if (source != 0)
        g_source_remove(std::exchange(source, 0));
}

int Timer::fire(void* self) {
    auto& timer = *static_cast<Timer*>(self);
    timer.source = 0;
    // Taken out first: the task may start the timer anew, or destroy it.
    auto const due = std::exchange(timer.task, {});
    due();
    return G_SOURCE_REMOVE;
}

void postToMainLoop(std::function<void()> task) {
    g_idle_add_full(G_PRIORITY_DEFAULT, runTask, new Task{std::move(task)}, deleteTask);
}

} // namespace workbench
