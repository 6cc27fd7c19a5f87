#include "Workbench/HostEditor/SignalWatch.h"

#include <glib-unix.h>

#include <csignal>
#include <utility>

namespace workbench {

SignalWatch::SignalWatch(std::function<void(int)> whenAsked)
    : asked(std::move(whenAsked))
    , sources{{{this, SIGINT}, {this, SIGTERM}, {this, SIGHUP}}} {
    GSourceFunc const arrived = [](gpointer data) -> gboolean {
        auto& source = *static_cast<Source*>(data);
        source.id = 0;
        source.watch->asked(source.number);
        return G_SOURCE_REMOVE;
    };
    for (auto& source : sources)
        source.id = g_unix_signal_add(source.number, arrived, &source);
}

SignalWatch::~SignalWatch() {
    for (auto const& source : sources)
        if (source.id != 0)
            g_source_remove(source.id);
}

} // namespace workbench
