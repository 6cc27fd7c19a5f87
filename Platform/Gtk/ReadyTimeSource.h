#pragma once

#include "Platform/Gtk/GRef.h"

#include <cstdint>
#include <functional>

namespace fcp {

// A source of a main context that waits for a moment and nothing else. While it rests it costs a turn of the
// loop one comparison. Made and destroyed on the context's thread, and not from inside `dispatch`.
class ReadyTimeSource {
public:
    // `dispatch` runs on each turn from the ready time on, until another time is set. It may run a loop of
    // its own, in which the source goes on.
    ReadyTimeSource(GMainContext* context, std::function<void()> dispatch);
    ~ReadyTimeSource();

    ReadyTimeSource(ReadyTimeSource const&) = delete;
    ReadyTimeSource& operator=(ReadyTimeSource const&) = delete;

    // In microseconds of g_get_monotonic_time. Any thread, as are the other two.
    void readyAt(std::int64_t time);
    void readyNow();
    void rest();

private:
    std::function<void()> task;
    GRef<GSource> const source;
};

} // namespace fcp
