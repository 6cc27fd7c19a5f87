#pragma once

#include "Workbench/ContainerApp/Exporter.h"
#include "Workbench/ContainerApp/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace workbench {

// The main loop of these tests.
class TaskQueue {
public:
    void post(std::function<void()> task) {
        auto const lock = std::lock_guard{mutex};
        tasks.push_back(std::move(task));
        arrived.notify_one();
    }

    // False when no task comes within 20 seconds.
    [[nodiscard]] bool waitForOne() {
        auto lock = std::unique_lock{mutex};
        return arrived.wait_for(lock, std::chrono::seconds{20}, [this] { return !tasks.empty(); });
    }

    // Runs the next task, once it has come; false when none does.
    [[nodiscard]] bool runOne() {
        if (!waitForOne())
            return false;
        auto lock = std::unique_lock{mutex};
        auto const task = std::move(tasks.front());
        tasks.pop_front();
        lock.unlock();
        task();
        return true;
    }

private:
    std::mutex mutex;
    std::condition_variable arrived;
    std::deque<std::function<void()>> tasks;
};

class ExporterFixture : public testing::Test {
protected:
    TemporaryFolder folder;
    TaskQueue queue;
    Exporter exporter{[this](std::function<void()> task) { queue.post(std::move(task)); }};
};

} // namespace workbench
