#pragma once

#include "Platform/Gtk/GRef.h"

#include <utility>

namespace fcp {

template <auto handler>
struct GSignalTrampoline;

// Keeps the receiver alive while its handler runs: what the handler calls may drop the receiver's last owner.
template <typename Receiver, typename Result, typename... Arguments,
          Result (Receiver::*handler)(Arguments...)>
struct GSignalTrampoline<handler> {
    static Result call(Arguments... arguments, gpointer data) {
        auto const receiver = static_cast<Receiver*>(data)->shared_from_this();
        return (*receiver.*handler)(arguments...);
    }
};

// The connection of one signal to a member function that takes the signal's arguments, the emitter first.
// Disconnects when it goes, so it must be a member of its receiver or go before it. Main thread only.
class GSignal {
public:
    GSignal() = default;

    template <auto handler, typename Receiver>
    [[nodiscard]] static GSignal connect(gpointer emitter, char const* signal, Receiver* receiver) {
        auto const callback = reinterpret_cast<GCallback>(&GSignalTrampoline<handler>::call);
        return {G_OBJECT(emitter), g_signal_connect(emitter, signal, callback, receiver)};
    }

    // For a callback that needs no receiver: it takes the signal's arguments, then a pointer that is null.
    template <typename Result, typename... Arguments>
    [[nodiscard]] static GSignal connect(gpointer emitter, char const* signal,
                                         Result (*callback)(Arguments...)) {
        return {G_OBJECT(emitter),
                g_signal_connect(emitter, signal, reinterpret_cast<GCallback>(callback), nullptr)};
    }

    GSignal(GSignal&&) = default;

    GSignal& operator=(GSignal&& other) noexcept {
        std::swap(emitter, other.emitter);
        std::swap(id, other.id);
        return *this;
    }

    ~GSignal() {
        if (emitter)
            g_signal_handler_disconnect(emitter.get(), id);
    }

private:
    GSignal(GObject* object, gulong handlerId)
        : emitter(GRef<GObject>::retain(object))
        , id(handlerId) {}

    GRef<GObject> emitter;
    gulong id = 0;
};

} // namespace fcp
