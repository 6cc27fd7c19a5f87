#pragma once

#include "Ports/MainLoop.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <utility>

namespace fcp {

// Brings host notifications to the main thread in their order. On the main thread a task runs at once, unless
// earlier ones are still queued: then it joins them. Any thread.
class HostNotificationQueue : public std::enable_shared_from_this<HostNotificationQueue> {
public:
    explicit HostNotificationQueue(MainLoop& loop)
        : mainLoop(loop) {}

    HostNotificationQueue(HostNotificationQueue const&) = delete;
    HostNotificationQueue& operator=(HostNotificationQueue const&) = delete;

    // `task` must not own the panel: it may be built and queued on the host's thread, and the panel's last
    // reference must die on the main one.
    template <typename Task>
    void run(Task task) {
        if (queued.load(std::memory_order_acquire) == 0 && mainLoop.isMainThread())
            return task();
        queued.fetch_add(1, std::memory_order_acq_rel);
        mainLoop.post([self = shared_from_this(), task = std::move(task)] {
            self->queued.fetch_sub(1, std::memory_order_acq_rel);
            task();
        });
    }

private:
    MainLoop& mainLoop;
    std::atomic<std::size_t> queued = 0;
};

} // namespace fcp
