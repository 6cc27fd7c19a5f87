#include "Platform/Gtk/ReadyTimeSource.h"

#include <utility>

namespace fcp {

namespace {

gboolean dispatchTask(GSource*, GSourceFunc, gpointer task) noexcept {
    (*static_cast<std::function<void()>*>(task))();
    return G_SOURCE_CONTINUE;
}

// Without functions to prepare and check, GLib looks at the ready time alone.
GSourceFuncs readyTimeFunctions{nullptr, nullptr, dispatchTask, nullptr, nullptr, nullptr};

} // namespace

ReadyTimeSource::ReadyTimeSource(GMainContext* context, std::function<void()> dispatch)
    : task(std::move(dispatch))
    , source(GRef<GSource>::adopt(g_source_new(&readyTimeFunctions, sizeof(GSource)))) {
    g_source_set_callback(source.get(), nullptr, &task, nullptr);
    g_source_set_static_name(source.get(), "fcp");
    g_source_set_can_recurse(source.get(), TRUE);
    g_source_attach(source.get(), context);
}

ReadyTimeSource::~ReadyTimeSource() {
    g_source_destroy(source.get());
}

void ReadyTimeSource::readyAt(std::int64_t time) {
    g_source_set_ready_time(source.get(), time);
}

void ReadyTimeSource::readyNow() {
    readyAt(0);
}

void ReadyTimeSource::rest() {
    readyAt(-1);
}

} // namespace fcp
