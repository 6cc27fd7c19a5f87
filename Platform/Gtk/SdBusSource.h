#pragma once

#include "Platform/Gtk/GRef.h"

#include <systemd/sd-bus.h>

namespace fcp {

// Drives one bus connection from GLib's default main loop, which must be the calling thread's. While the bus
// floods us it takes turns with everything else in the loop, sources of lower priority included: drawing
// goes on.
class SdBusSource {
public:
    // Does the connection's work, on the main thread. May destroy the source.
    class Client {
    public:
        virtual ~Client() = default;

        // Does one piece of work: positive when there may be more, 0 when there is none, negative when the
        // connection is gone.
        [[nodiscard]] virtual int step() = 0;

        // The last call from this source.
        virtual void busIsGone() = 0;
    };

    // Both are borrowed and outlive the source.
    SdBusSource(sd_bus& bus, Client& client);
    ~SdBusSource();

    SdBusSource(SdBusSource const&) = delete;
    SdBusSource& operator=(SdBusSource const&) = delete;

private:
    struct Source;
    static gboolean prepare(GSource* base, gint* timeout);
    static gboolean check(GSource* base);
    static gboolean dispatch(GSource* base, GSourceFunc callback, gpointer data);

    GRef<GSource> source;
};

} // namespace fcp
