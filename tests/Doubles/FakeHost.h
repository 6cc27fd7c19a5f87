#pragma once

#include "Doubles/Journal.h"
#include "FcpExtension/ProExtensionHost.h"
#include "Ports/HostRuntime.h"
#include "Ports/MediaTime.h"

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace fcp::test {

[[nodiscard]] inline CMTime mediaTime(std::int64_t value, std::int32_t timescale) {
    return {value, timescale, CMTime::Valid, 0};
}

[[nodiscard]] inline CMTime invalidTime() {
    return {};
}

// Plain arithmetic, and as unhelpful as a platform may be: coarser ticks where a value does not fit, and no
// timescale where there are no ticks.
class FakeMediaTime final : public MediaTime {
public:
    [[nodiscard]] double seconds(CMTime time) const override {
        if ((time.flags & CMTime::Valid) == 0)
            return std::numeric_limits<double>::quiet_NaN();
        if ((time.flags & CMTime::PositiveInfinity) != 0)
            return std::numeric_limits<double>::infinity();
        if ((time.flags & CMTime::NegativeInfinity) != 0)
            return -std::numeric_limits<double>::infinity();
        return static_cast<double>(time.value) / time.timescale;
    }

    [[nodiscard]] CMTime makeWithSeconds(double seconds, std::int32_t preferredTimescale) const override {
        ++made;
        if (!std::isfinite(seconds))
            return invalidTime();
        auto timescale = preferredTimescale;
        while (std::abs(seconds * timescale) >= 9223372036854775808.0)
            timescale /= 2;
        return mediaTime(static_cast<std::int64_t>(seconds * timescale), timescale);
    }

    mutable int made = 0;
};

class FakeSequence final : public FCPXSequence {
public:
    explicit FakeSequence(Journal& sharedJournal)
        : journal(sharedJournal) {}

    [[nodiscard]] std::optional<std::string> name() const override { return note("name", sequenceName); }

    [[nodiscard]] CMTime duration() const override { return note("duration", length); }

    [[nodiscard]] CMTime frameDuration() const override { return note("frameDuration", frame); }

    [[nodiscard]] CMTime start() const override { return note("start", mediaTime(3600, 1)); }

    std::optional<std::string> sequenceName = "Interview";
    CMTime length = mediaTime(21, 2);
    CMTime frame = mediaTime(1001, 30000);

private:
    template <typename T>
    T note(char const* what, T value) const {
        journal.note(std::string("sequence ") + what);
        return value;
    }

    Journal& journal;
};

class FakeTimeline final : public FCPXTimeline {
public:
    explicit FakeTimeline(Journal& sharedJournal)
        : journal(sharedJournal) {}

    [[nodiscard]] CMTime playheadTime() const override {
        journal.note("timeline playheadTime");
        return playhead;
    }

    void movePlayheadTo(CMTime time) override {
        journal.note("timeline movePlayheadTo " + std::to_string(time.value) + "/" +
                     std::to_string(time.timescale));
        moves.push_back(time);
        if (onMove)
            onMove();
    }

    [[nodiscard]] std::shared_ptr<FCPXSequence> activeSequence() const override {
        journal.note("timeline activeSequence");
        return sequence;
    }

    void add(std::shared_ptr<FCPXTimelineObserver> observer) override {
        journal.note("timeline add");
        added.push_back(observer);
        observers.push_back(std::move(observer));
    }

    void remove(std::shared_ptr<FCPXTimelineObserver> observer) override {
        journal.note("timeline remove");
        std::erase(observers, observer);
    }

    // Tells every observer, as the host does after a move to `seconds`.
    void notifyPlayhead(double seconds) {
        playhead = mediaTime(std::llround(seconds * 1'000'000), 1'000'000);
        notifyPlayhead();
    }

    void notifyPlayhead() {
        for (auto const& observer : std::vector(observers))
            observer->playheadTimeChanged();
    }

    void notifySequence() {
        for (auto const& observer : std::vector(observers))
            observer->activeSequenceChanged();
    }

    CMTime playhead = mediaTime(0, 600);
    std::shared_ptr<FakeSequence> sequence;
    std::vector<CMTime> moves;
    std::vector<std::shared_ptr<FCPXTimelineObserver>> observers;
    std::vector<std::weak_ptr<FCPXTimelineObserver>> added; // also those removed since
    std::function<void()> onMove; // runs inside the move

private:
    Journal& journal;
};

class FakeHost final : public FCPXHost {
public:
    explicit FakeHost(Journal& sharedJournal)
        : journal(sharedJournal) {}

    [[nodiscard]] std::shared_ptr<FCPXTimeline> timeline() const override {
        journal.note("host timeline");
        return current;
    }

    std::shared_ptr<FakeTimeline> current;

private:
    Journal& journal;
};

// Hands out `host`, which may be null.
class FakeHostRuntime final : public HostRuntime {
public:
    explicit FakeHostRuntime(Journal& sharedJournal)
        : journal(sharedJournal) {}

    [[nodiscard]] std::shared_ptr<FCPXHost> proExtensionHostSingleton() override {
        journal.note("host singleton");
        return host;
    }

    std::shared_ptr<FakeHost> host;

private:
    Journal& journal;
};

} // namespace fcp::test
