#pragma once

#include "Platform/Gtk/DeadlineHeap.h"
#include "Platform/Gtk/PostQueue.h"
#include "Ports/MainLoop.h"

#include <thread>

namespace fcp {

// The main loop over a GLib main context, which somebody else runs. Made on the thread that runs the context;
// destroyed there too, outside of its own tasks: what is still owed is then dropped.
class GLibMainLoop final : public MainLoop {
public:
    explicit GLibMainLoop(GMainContext* context = g_main_context_default());

    GLibMainLoop(GLibMainLoop const&) = delete;
    GLibMainLoop& operator=(GLibMainLoop const&) = delete;

    [[nodiscard]] bool isMainThread() const override;
    void post(std::function<void()> task) override;
    void after(Seconds delay, std::function<void()> task) override;
    [[nodiscard]] std::unique_ptr<Timer> timer(Seconds interval, std::function<void()> task) override;

private:
    std::thread::id const mainThread = std::this_thread::get_id();
    PostQueue posts;
    DeadlineHeap deadlines;
};

} // namespace fcp
