#pragma once

#include "FcpExtension/Delay.h"
#include "Ports/MainLoop.h"

#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace fcp::test {

// A loop whose time only moves when a test moves it. The thread that makes it is the main thread.
class FakeMainLoop final : public MainLoop {
public:
    [[nodiscard]] bool isMainThread() const override { return std::this_thread::get_id() == mainThread; }

    void post(std::function<void()> task) override {
        std::lock_guard const guard(mutex);
        posted.push_back(std::move(task));
    }

    void after(Seconds delay, std::function<void()> task) override { schedule(delay, std::move(task)); }

    [[nodiscard]] std::unique_ptr<Timer> timer(Seconds interval, std::function<void()> task) override {
        return std::make_unique<FakeTimer>(schedule(interval, std::move(task)));
    }

    // Runs what was posted, including what that posts in turn. Returns how many tasks ran.
    int runPosted() {
        int ran = 0;
        for (; auto task = takePosted(); ++ran)
            task();
        return ran;
    }

    // Moves time, running what falls due on the way at its own moment, and what is posted before it.
    void advance(Seconds duration) {
        auto const end = now + duration;
        runPosted();
        while (!owed.empty() && owed.begin()->first <= end) {
            now = owed.begin()->first;
            auto const entry = owed.extract(owed.begin()).mapped();
            if (!std::exchange(entry->done, true))
                std::exchange(entry->task, nullptr)();
            runPosted();
        }
        now = end;
    }

    // Deadlines that will still run something.
    [[nodiscard]] std::size_t pending() const {
        std::size_t count = 0;
        for (auto const& [deadline, entry] : owed)
            count += entry->done ? 0 : 1;
        return count;
    }

    // What one of them asked for, from the moment it was asked.
    [[nodiscard]] std::multimap<Seconds, bool> deadlines() const {
        std::multimap<Seconds, bool> found;
        for (auto const& [deadline, entry] : owed)
            found.emplace(deadline - now, entry->done);
        return found;
    }

private:
    struct Entry {
        std::function<void()> task;
        bool done = false;
    };

    class FakeTimer final : public Timer {
    public:
        explicit FakeTimer(std::shared_ptr<Entry> scheduled)
            : entry(std::move(scheduled)) {}

        void invalidate() override {
            entry->done = true;
            entry->task = nullptr;
        }

    private:
        std::shared_ptr<Entry> const entry;
    };

    std::shared_ptr<Entry> schedule(Seconds delay, std::function<void()> task) {
        auto entry = std::make_shared<Entry>(Entry{std::move(task)});
        owed.emplace(now + usableDelay(delay), entry); // equal deadlines stay in the order of the calls
        return entry;
    }

    std::function<void()> takePosted() {
        std::lock_guard const guard(mutex);
        if (posted.empty())
            return nullptr;
        auto task = std::move(posted.front());
        posted.pop_front();
        return task;
    }

    std::thread::id const mainThread = std::this_thread::get_id();
    std::mutex mutex; // only for `posted`
    std::deque<std::function<void()>> posted;
    std::multimap<Seconds, std::shared_ptr<Entry>> owed;
    Seconds now{0};
};

} // namespace fcp::test
