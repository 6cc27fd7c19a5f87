#pragma once

#include <glib.h>

#include <functional>

namespace workbench {

// Turns the main loop until the condition holds; false when it does not within the time.
inline bool waitUntil(std::function<bool()> const& condition, int milliseconds = 20'000) {
    auto const deadline = g_get_monotonic_time() + milliseconds * G_GINT64_CONSTANT(1000);
    while (!condition()) {
        if (g_get_monotonic_time() > deadline)
            return false;
        // Wakes the loop where the condition changes without an event.
        auto const wake = g_timeout_add(5, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
        g_main_context_iteration(nullptr, TRUE);
        g_source_remove(wake);
    }
    return true;
}

} // namespace workbench
