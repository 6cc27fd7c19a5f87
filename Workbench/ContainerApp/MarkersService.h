#pragma once

#include "Workbench/ContainerApp/Bus.h"
#include "Workbench/ContainerApp/ChangeThrottle.h"
#include "Workbench/ContainerApp/CommentStore.h"
#include "Workbench/ContainerApp/Timer.h"

#include <cstdint>
#include <string>

struct sd_bus_vtable;

namespace workbench {

// The markers of every sequence, for whoever draws them: the object /com/zelvix/fcp/Markers with the
// interface com.zelvix.fcp.Markers1. Main thread only.
class MarkersService {
public:
    MarkersService(Bus& bus, CommentStore& comments, SequenceStore& sequences);

    MarkersService(MarkersService const&) = delete;
    MarkersService& operator=(MarkersService const&) = delete;

    // False when the bus refuses.
    [[nodiscard]] bool publish();

    // A write has been committed. Tells the bus, but not at every write of a burst.
    void changed(std::string const& sequenceKey, std::uint64_t revision);

private:
    static sd_bus_vtable const* methods();

    [[nodiscard]] int getMarkers(sd_bus_message* call);
    void tellDue();

    Bus& bus;
    CommentStore& comments;
    SequenceStore& sequences;
    ChangeThrottle throttle;
    Timer timer;
    BusSlot object;
};

} // namespace workbench
