#include "Platform/Gtk/SdBusOutbox.h"

#include <cstdint>
#include <utility>

namespace fcp {

namespace {

constexpr std::size_t maximumWaitingSize = std::size_t{64} * 1024 * 1024;

// What a small message costs in memory beside its body.
constexpr std::size_t messageOverhead = 2048;

bool hasEmptyQueue(sd_bus& bus) {
    std::uint64_t queued = 0;
    return sd_bus_get_n_queued_write(&bus, &queued) >= 0 && queued == 0;
}

} // namespace

void SdBusOutbox::post(sd_bus& bus, SdBusMessagePointer message, std::size_t size) {
    if (waiting.empty() && hasEmptyQueue(bus)) {
        // A failure closes the connection, which its source finds out; the message is lost with it.
        (void)sd_bus_send(&bus, message.get(), nullptr);
        return;
    }
    auto const cost = size + messageOverhead;
    if (waitingSize + cost > maximumWaitingSize)
        return;
    waitingSize += cost;
    waiting.push_back({std::move(message), cost});
}

bool SdBusOutbox::sendNext(sd_bus& bus) {
    if (waiting.empty() || !hasEmptyQueue(bus))
        return false;
    auto const next = std::move(waiting.front());
    waiting.pop_front();
    waitingSize -= next.size;
    (void)sd_bus_send(&bus, next.message.get(), nullptr);
    return true;
}

void SdBusOutbox::clear() {
    waiting.clear();
    waitingSize = 0;
}

} // namespace fcp
