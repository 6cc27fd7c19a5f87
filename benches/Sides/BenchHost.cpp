#include "benches/Sides/BenchHost.h"

#include <atomic>
#include <mutex>
#include <utility>
#include <vector>

namespace fcp::bench {

namespace {

CMTime time(std::int64_t value, std::int32_t timescale) {
    return {value, timescale, CMTime::Valid, 0};
}

class Sequence final : public FCPXSequence {
public:
    [[nodiscard]] std::optional<std::string> name() const override { return "Interview"; }

    [[nodiscard]] CMTime duration() const override { return time(21, 2); }

    [[nodiscard]] CMTime frameDuration() const override { return time(Burst::frameTicks, Burst::timescale); }

    [[nodiscard]] CMTime start() const override { return time(0, 1); }
};

} // namespace

class BenchHost::Timeline final : public FCPXTimeline {
public:
    Timeline(int burstFrames, Burst::Thread burstThread)
        : burst(burstFrames, burstThread) {}

    [[nodiscard]] CMTime playheadTime() const override {
        return time(std::int64_t{frame} * Burst::frameTicks, Burst::timescale);
    }

    void movePlayheadTo(CMTime) override {
        burst.run([this](int nextFrame) {
            frame = nextFrame;
            notify();
        });
    }

    [[nodiscard]] std::shared_ptr<FCPXSequence> activeSequence() const override { return sequence; }

    void add(std::shared_ptr<FCPXTimelineObserver> observer) override {
        std::lock_guard const guard(mutex);
        observers.push_back(std::move(observer));
    }

    void remove(std::shared_ptr<FCPXTimelineObserver> observer) override {
        std::lock_guard const guard(mutex);
        std::erase(observers, observer);
    }

private:
    void notify() {
        std::lock_guard const guard(mutex);
        for (auto const& observer : observers)
            observer->playheadTimeChanged();
    }

    std::shared_ptr<Sequence> const sequence = std::make_shared<Sequence>();
    std::mutex mutex; // for `observers`
    std::vector<std::shared_ptr<FCPXTimelineObserver>> observers;
    std::atomic<int> frame = 0;
    Burst burst; // last: its thread ends before the rest goes
};

BenchHost::BenchHost(int burstFrames, Burst::Thread burstThread)
    : onlyTimeline(std::make_shared<Timeline>(burstFrames, burstThread)) {}

std::shared_ptr<FCPXTimeline> BenchHost::timeline() const {
    return onlyTimeline;
}

} // namespace fcp::bench
