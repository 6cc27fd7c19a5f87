#include "Workbench/ContainerApp/KdenliveWriter.h"

#include "Workbench/ContainerApp/Json.h"

#include <array>
#include <utility>

namespace workbench {

namespace {

// The categories that the editor has unless a user changed them; the place of each is its number.
constexpr std::array categories{
    NamedColour{"purple", {0x9B, 0x59, 0xB6}},    NamedColour{"blue", {0x3D, 0xAE, 0xE9}},
    NamedColour{"turquoise", {0x1A, 0xBC, 0x9C}}, NamedColour{"green", {0x1C, 0xDC, 0x9A}},
    NamedColour{"yellow", {0xC9, 0xCE, 0x3B}},    NamedColour{"light orange", {0xFD, 0xBC, 0x4B}},
    NamedColour{"orange", {0xF3, 0x9C, 0x1F}},    NamedColour{"dark orange", {0xF4, 0x77, 0x50}},
    NamedColour{"red", {0xDA, 0x44, 0x53}},
};

std::string guideOf(TimelineMarker const& marker) {
    auto const guide = Json{{"pos", marker.frame},
                            {"comment", joined(marker.remarks, " / ")},
                            {"type", marker.colour ? nearest(*marker.colour, categories) : 0},
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
