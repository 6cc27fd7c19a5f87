#include "Workbench/ContainerApp/FcpxmlWriter.h"

#include "Workbench/ContainerApp/XmlText.h"

#include <utility>

namespace workbench {

namespace {

constexpr char const* formatId = "r1";

// How long `frames` are: "1001/24000s", "2s".
std::string timeText(std::int64_t frames, FrameRate rate) {
    if (rate.denominator == 1 && frames % rate.numerator == 0)
        return std::to_string(frames / rate.numerator) + "s";
    return std::to_string(frames * rate.denominator) + "/" + std::to_string(rate.numerator) + "s";
}

void writeResources(XmlText& xml, FrameRate rate) {
    xml.open("resources");
    xml.open("format");
    xml.attribute("id", formatId);
    xml.attribute("frameDuration", timeText(1, rate));
    xml.attribute("width", 1920);
    xml.attribute("height", 1080);
    xml.close();
    xml.close();
}

void openSequence(XmlText& xml, Timeline const& timeline) {
    auto const& count = timeline.count;
    xml.open("event");
    xml.attribute("name", timeline.title);
    xml.open("project");
    xml.attribute("name", timeline.title);
    xml.open("sequence");
    xml.attribute("format", formatId);
    xml.attribute("duration", timeText(timeline.length, count.rate));
    xml.attribute("tcStart", timeText(count.firstFrame, count.rate));
    xml.attribute("tcFormat", count.dropFrame && canDropFrames(count.rate) ? "DF" : "NDF");
    xml.open("spine");
}

// Its own time begins at zero, the sequence's with the first label.
void openGap(XmlText& xml, Timeline const& timeline) {
    auto const& count = timeline.count;
    xml.open("gap");
    xml.attribute("name", "Gap");
    xml.attribute("offset", timeText(count.firstFrame, count.rate));
    xml.attribute("start", "0s");
    xml.attribute("duration", timeText(timeline.length, count.rate));
}

void writeMarker(XmlText& xml, TimelineMarker const& marker, FrameRate rate) {
    xml.open("marker");
    xml.attribute("start", timeText(marker.frame, rate));
    xml.attribute("duration", timeText(1, rate));
    xml.attribute("value", marker.title);
    xml.attribute("completed", marker.resolved ? "1" : "0");
    xml.attribute("note", joined(marker.remarks, "\n"));
    xml.close();
}

} // namespace

FcpxmlWriter::FcpxmlWriter(Timeline theTimeline)
    : timeline{std::move(theTimeline)} {}

void FcpxmlWriter::write(TextSink const& sink) const {
    auto xml = XmlText{"fcpxml", "fcpxml"};
    xml.attribute("version", "1.10");
    writeResources(xml, timeline.count.rate);
    openSequence(xml, timeline);
    openGap(xml, timeline);
    for (auto const& marker : timeline.markers) {
        writeMarker(xml, marker, timeline.count.rate);
        sink(xml.take());
    }
    sink(xml.finish());
}

} // namespace workbench
