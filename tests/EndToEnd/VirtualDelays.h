#pragma once

#include "Doubles/FakeMainLoop.h"
#include "Ports/MainLoop.h"

#include <utility>

namespace fcp::test {

// The real loop, except that delays pass only when a test lets them: nobody waits for half a minute, and
// nothing fires behind a test's back on a busy machine.
class VirtualDelays final : public MainLoop {
public:
    explicit VirtualDelays(MainLoop& realLoop)
        : loop(realLoop) {}

    [[nodiscard]] bool isMainThread() const override { return loop.isMainThread(); }

    void post(std::function<void()> task) override { loop.post(std::move(task)); }

    void after(Seconds delay, std::function<void()> task) override { delays.after(delay, std::move(task)); }

    [[nodiscard]] std::unique_ptr<Timer> timer(Seconds interval, std::function<void()> task) override {
        return delays.timer(interval, std::move(task));
    }

    void elapse(Seconds duration) { delays.advance(duration); }

private:
    MainLoop& loop;
    FakeMainLoop delays;
};

} // namespace fcp::test
