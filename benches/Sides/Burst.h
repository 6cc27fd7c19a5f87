#pragma once

#include <functional>
#include <string>
#include <thread>

namespace fcp::bench {

// Frames that the host runs through as fast as it can, from the main thread or from one of its own.
class Burst {
public:
    // A frame of the sequence is 1001/30000 s.
    static constexpr int frameTicks = 1001;
    static constexpr int timescale = 30000;

    enum class Thread { Main, Other };

    Burst(int numberOfFrames, Thread fromThread)
        : frames(numberOfFrames)
        , thread(fromThread) {}

    ~Burst() { join(); }

    Burst(Burst const&) = delete;
    Burst& operator=(Burst const&) = delete;

    // Calls `notify` with 1, 2, ... in order. From the main thread this returns when all is said.
    void run(std::function<void(int frame)> const& notify) {
        auto const all = [notify, last = frames] {
            for (int frame = 1; frame <= last; ++frame)
                notify(frame);
        };
        if (thread == Thread::Main)
            return all();
        join();
        notifier = std::thread(all);
    }

private:
    void join() {
        if (notifier.joinable())
            notifier.join();
    }

    int const frames;
    Thread const thread;
    std::thread notifier;
};

} // namespace fcp::bench
