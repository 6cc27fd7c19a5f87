#include "Contract/TurnUntil.h"

#include <glib.h>

namespace fcp::test {

bool turnUntil(std::function<bool()> const& condition) {
    bool late = false;
    auto const notice = [](gpointer flag) -> gboolean {
        *static_cast<bool*>(flag) = true;
        return G_SOURCE_CONTINUE;
    };
    // Wakes the loop for conditions that come true without an event.
    auto const wake = g_timeout_add(10, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
    auto const deadline = g_timeout_add_seconds(20, notice, &late);
    bool holds = condition();
    for (; !holds && !late; holds = condition())
        g_main_context_iteration(nullptr, TRUE);
    g_source_remove(wake);
    g_source_remove(deadline);
    return holds;
}

void turnWhileReady() {
    while (g_main_context_iteration(nullptr, FALSE)) {
    }
}

} // namespace fcp::test
