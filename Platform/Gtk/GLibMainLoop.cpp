#include "Platform/Gtk/GLibMainLoop.h"

#include <utility>

namespace fcp {

namespace {

using OwedTask = std::shared_ptr<std::function<void()>>;

// An invalidated timer keeps its deadline, with nothing left to do there.
class GLibTimer final : public Timer {
public:
    explicit GLibTimer(OwedTask task)
        : owed(std::move(task)) {}

    void invalidate() override {
        // The task goes last: it may own this handle.
        auto const dropped = std::exchange(*owed, nullptr);
    }

private:
    OwedTask const owed;
};

} // namespace

GLibMainLoop::GLibMainLoop(GMainContext* context)
    : posts(context)
    , deadlines(context) {}

bool GLibMainLoop::isMainThread() const {
    return std::this_thread::get_id() == mainThread;
}

void GLibMainLoop::post(std::function<void()> task) {
    posts.post(std::move(task));
}

void GLibMainLoop::after(Seconds delay, std::function<void()> task) {
    deadlines.after(delay, std::move(task));
}

std::unique_ptr<Timer> GLibMainLoop::timer(Seconds interval, std::function<void()> task) {
    auto const owed = std::make_shared<std::function<void()>>(std::move(task));
    after(interval, [owed] {
        if (auto const run = std::exchange(*owed, nullptr))
            run();
    });
    return std::make_unique<GLibTimer>(owed);
}

} // namespace fcp
