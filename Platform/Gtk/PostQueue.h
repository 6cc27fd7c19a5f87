#pragma once

#include "Platform/Gtk/ReadyTimeSource.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>

namespace fcp {

// Tasks for the context's thread, in the order of their arrival, behind one source: a burst wakes the loop
// once, not once per task.
class PostQueue {
public:
    explicit PostQueue(GMainContext* context);

    // Any thread. The task runs, and is destroyed, on the context's thread on a later turn.
    void post(std::function<void()> task);

private:
    void runTurn();
    [[nodiscard]] std::size_t size();
    [[nodiscard]] std::function<void()> take();

    std::mutex mutex; // for `tasks`, and for the source's state along with them
    std::deque<std::function<void()>> tasks;
    ReadyTimeSource source;
};

} // namespace fcp
