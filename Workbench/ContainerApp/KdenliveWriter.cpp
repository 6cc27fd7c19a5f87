#include "Workbench/ContainerApp/KdenliveWriter.h"

#include "Workbench/ContainerApp/Json.h"
#include "Workbench/ContainerApp/KdenliveCategories.h"

#include <utility>

namespace workbench {

namespace {

std::string guideOf(TimelineMarker const& marker) {
    auto const guide = Json{{"pos", marker.frame},
                            {"comment", joined(marker.remarks, " / ")},
                            {"type", marker.colour ? nearest(*marker.colour, kdenliveCategories) : 0},
                            {"duration", marker.frames}};
    return guide.dump();
}

} // namespace

// The editor refuses a list as a whole when two guides of it lie on the same frame.
KdenliveWriter::KdenliveWriter(Timeline theTimeline)
    : timeline{std::move(theTimeline)} {
    timeline.markers = oneOnEachFrame(std::move(timeline.markers));
}

void KdenliveWriter::write(TextSink const& sink) const {
    auto const* separator = "[\n";
    for (auto const& marker : timeline.markers)
        sink(std::exchange(separator, ",\n") + guideOf(marker));
    sink(timeline.markers.empty() ? "[]\n" : "\n]\n");
}

} // namespace workbench
