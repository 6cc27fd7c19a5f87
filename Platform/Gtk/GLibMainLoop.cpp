#include "Platform/Gtk/GLibMainLoop.h"

#include "FcpExtension/OneShotTask.h"

#include <utility>

namespace fcp {

namespace {

// An invalidated timer keeps its deadline, with nothing left to do there.
class GLibTimer final : public Timer {
public:
    explicit GLibTimer(std::shared_ptr<OneShotTask> task)
        : owed(std::move(task)) {}

    void invalidate() override { owed->drop(); }

private:
    std::shared_ptr<OneShotTask> const owed;
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
    auto const owed = std::make_shared<OneShotTask>(std::move(task));
    after(interval, [owed] { owed->run(); });
    return std::make_unique<GLibTimer>(owed);
}

} // namespace fcp
