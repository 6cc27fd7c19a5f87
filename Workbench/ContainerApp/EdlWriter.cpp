#include "Workbench/ContainerApp/EdlWriter.h"

#include "Workbench/ContainerApp/OutputFile.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <utility>

namespace workbench {

namespace {

// An event's number has three digits.
constexpr std::size_t mostEvents = 999;

constexpr auto defaultColour = MarkerColour{0, 127, 227};

constexpr std::array markerColours{
    NamedColour{"ResolveColorBlue", {0, 127, 227}},    NamedColour{"ResolveColorCyan", {0, 206, 208}},
    NamedColour{"ResolveColorGreen", {0, 173, 0}},     NamedColour{"ResolveColorYellow", {240, 157, 0}},
    NamedColour{"ResolveColorRed", {225, 36, 1}},      NamedColour{"ResolveColorPink", {255, 68, 200}},
    NamedColour{"ResolveColorPurple", {144, 19, 254}}, NamedColour{"ResolveColorFuchsia", {192, 46, 111}},
    NamedColour{"ResolveColorRose", {255, 161, 185}},  NamedColour{"ResolveColorLavender", {161, 147, 200}},
    NamedColour{"ResolveColorSky", {146, 226, 253}},   NamedColour{"ResolveColorMint", {114, 219, 0}},
    NamedColour{"ResolveColorLemon", {220, 233, 90}},  NamedColour{"ResolveColorSand", {196, 145, 94}},
    NamedColour{"ResolveColorCocoa", {110, 81, 67}},   NamedColour{"ResolveColorCream", {245, 235, 225}},
};

constexpr std::array locatorColours{
    NamedColour{"RED", {255, 0, 0}},       NamedColour{"GREEN", {0, 255, 0}},
    NamedColour{"BLUE", {0, 0, 255}},      NamedColour{"CYAN", {0, 255, 255}},
    NamedColour{"MAGENTA", {255, 0, 255}}, NamedColour{"YELLOW", {255, 255, 0}},
    NamedColour{"BLACK", {0, 0, 0}},       NamedColour{"WHITE", {255, 255, 255}},
};

// The list knows no other characters, and a bar would begin the next field.
std::string plain(std::string const& text) {
    auto const ascii = std::unique_ptr<char, decltype(&g_free)>{g_str_to_ascii(text.c_str(), "C"), g_free};
    auto result = std::string{ascii.get()};
    std::ranges::replace(result, '|', '/');
    return result;
}

std::string_view nameIn(std::span<NamedColour const> palette, TimelineMarker const& marker) {
    return palette[nearest(marker.colour.value_or(defaultColour), palette)].name;
}

std::string eventLine(int number, std::string const& begin, std::string const& end) {
    char place[12]; // room for any number, though there are 999 at most
    std::snprintf(place, sizeof place, "%03d", number);
    auto const times = begin + ' ' + end;
    return std::string{place} + "  AX       V     C        " + times + ' ' + times + "\r\n";
}

std::string eventOf(int number, TimelineMarker const& marker, FrameCount const& count) {
    auto const label = timecode(marker.frame, count);
    auto const title = plain(marker.title);
    auto event = eventLine(number, label, timecode(marker.frame + 1, count));
    event += ' ' + plain(joined(marker.remarks, " / ")) + " |C:";
    event += nameIn(markerColours, marker);
    event += " |M:" + title + " |D:" + std::to_string(std::max<std::int64_t>(marker.frames, 1)) +
             "\r\n* LOC: " + label + ' ';
    event += nameIn(locatorColours, marker);
    return event + ' ' + title + "\r\n";
}

} // namespace

EdlWriter::EdlWriter(Timeline theTimeline)
    : timeline{std::move(theTimeline)} {
    auto const events = timeline.markers.size();
    if (events > mostEvents)
        throw OutputError("an edit decision list holds at most " + std::to_string(mostEvents) +
                          " comments, and there are " + std::to_string(events) +
                          ": export only the open ones, or in another format");
}

void EdlWriter::write(TextSink const& sink) const {
    auto const& count = timeline.count;
    auto const drops = count.dropFrame && canDropFrames(count.rate);
    sink("TITLE: " + plain(timeline.title) + "\r\nFCM: " + (drops ? "DROP FRAME" : "NON-DROP FRAME") +
         "\r\n\r\n");
    for (auto number = 1; auto const& marker : timeline.markers)
        sink(eventOf(number++, marker, count));
}

} // namespace workbench
