#pragma once

#include "Ports/MainLoop.h"

namespace fcp {

// The main queue and the main thread's run loop, which the process runs. What is still owed at the end of the
// process is dropped.
class CocoaMainLoop final : public MainLoop {
public:
    [[nodiscard]] bool isMainThread() const override;
    void post(std::function<void()> task) override;
    void after(Seconds delay, std::function<void()> task) override;
    [[nodiscard]] std::unique_ptr<Timer> timer(Seconds interval, std::function<void()> task) override;
};

} // namespace fcp
