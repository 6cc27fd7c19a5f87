#pragma once

#include "Doubles/FakeHost.h"

#include <memory>
#include <utility>

namespace fcp::test {

// A timeline that may be asked and told from any thread; a journal's doubles belong to one.
class ThreadedTimeline final : public FCPXTimeline {
public:
    [[nodiscard]] CMTime playheadTime() const override { return mediaTime(1, 1); }

    void movePlayheadTo(CMTime) override {}

    [[nodiscard]] std::shared_ptr<FCPXSequence> activeSequence() const override { return nullptr; }

    void add(std::shared_ptr<FCPXTimelineObserver> observer) override { last = std::move(observer); }

    void remove(std::shared_ptr<FCPXTimelineObserver>) override {}

    std::shared_ptr<FCPXTimelineObserver> last;
};

class ThreadedHost final : public FCPXHost, public HostRuntime {
public:
    [[nodiscard]] std::shared_ptr<FCPXTimeline> timeline() const override { return current; }

    [[nodiscard]] std::shared_ptr<FCPXHost> proExtensionHostSingleton() override {
        return {std::shared_ptr<void>(), this};
    }

    std::shared_ptr<ThreadedTimeline> const current = std::make_shared<ThreadedTimeline>();
};

} // namespace fcp::test
