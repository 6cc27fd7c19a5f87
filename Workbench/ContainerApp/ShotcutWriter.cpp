#include "Workbench/ContainerApp/ShotcutWriter.h"

#include "Workbench/ContainerApp/XmlText.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <utility>

namespace workbench {

namespace {

constexpr auto noLimit = std::numeric_limits<std::int64_t>::max();

// The editor's own colour for a marker without one.
constexpr auto defaultColour = MarkerColour{0, 128, 0};

// The greatest count, below `limit`, of spans of so many seconds whose whole frames do not exceed `frame`,
// which is reduced by them.
std::int64_t takeSpans(std::int64_t& frame, std::int64_t seconds, std::int64_t limit, FrameRate rate) {
    auto const framesOf = [&](std::int64_t spans) {
        return spans * seconds * rate.numerator / rate.denominator;
    };
    auto spans = std::min(frame * rate.denominator / (seconds * rate.numerator), limit - 1);
    if (spans + 1 < limit && framesOf(spans + 1) <= frame)
        ++spans;
    frame -= framesOf(spans);
    return spans;
}

// "HH:MM:SS.mmm" as MLT means it: its hours and its minutes last as many whole frames as fit in, so that at
// 24000/1001 this is up to two frames away from what a clock shows.
std::string mltTime(std::int64_t frame, FrameRate rate) {
    auto const hours = takeSpans(frame, 3600, noLimit, rate);
    auto const minutes = takeSpans(frame, 60, 60, rate);
    auto const milliseconds = (frame * rate.denominator * 1000 + rate.numerator / 2) / rate.numerator;
    char text[64];
    std::snprintf(text, sizeof text, "%02lld:%02d:%02d.%03d", static_cast<long long>(hours),
                  static_cast<int>(minutes), static_cast<int>(milliseconds / 1000),
                  static_cast<int>(milliseconds % 1000));
    return text;
}

void property(XmlText& xml, std::string const& name, std::string const& value) {
    xml.open("property");
    xml.attribute("name", name);
    xml.text(value);
    xml.close();
}

void writeProfile(XmlText& xml, FrameRate rate) {
    xml.open("profile");
    xml.attribute("width", 1920);
    xml.attribute("height", 1080);
    xml.attribute("progressive", 1);
    xml.attribute("sample_aspect_num", 1);
    xml.attribute("sample_aspect_den", 1);
    xml.attribute("display_aspect_num", 16);
    xml.attribute("display_aspect_den", 9);
    xml.attribute("frame_rate_num", rate.numerator);
    xml.attribute("frame_rate_den", rate.denominator);
    xml.attribute("colorspace", 709);
    xml.close();
}

void openRange(XmlText& xml, std::string const& element, std::string const& id, std::int64_t length) {
    xml.open(element);
    xml.attribute("id", id);
    xml.attribute("in", 0);
    xml.attribute("out", length - 1);
}

void writeBlack(XmlText& xml, std::int64_t length) {
    openRange(xml, "producer", "black", length);
    property(xml, "length", std::to_string(length));
    property(xml, "eof", "pause");
    property(xml, "resource", "0");
    property(xml, "mlt_service", "color");
    property(xml, "mlt_image_format", "rgb");
    xml.close();
}

void openPlaylist(XmlText& xml, std::string const& id) {
    xml.open("playlist");
    xml.attribute("id", id);
}

// The editor looks for the two tracks by these names: its ground, and the first one that shows.
void writeTracks(XmlText& xml, std::int64_t length) {
    openPlaylist(xml, "background");
    xml.open("entry");
    xml.attribute("producer", "black");
    xml.attribute("in", 0);
    xml.attribute("out", length - 1);
    xml.close();
    xml.close();
    openPlaylist(xml, "playlist0");
    property(xml, "shotcut:video", "1");
    property(xml, "shotcut:name", "V1");
    xml.close();
}

void track(XmlText& xml, std::string const& producer) {
    xml.open("track");
    xml.attribute("producer", producer);
    xml.close();
}

// The editor takes a marker for a range when its end lies behind its start.
void writeMarker(XmlText& xml, std::string const& name, TimelineMarker const& marker, FrameRate rate) {
    xml.open("properties");
    xml.attribute("name", name);
    property(xml, "text", joined(marker.remarks, " / "));
    property(xml, "start", mltTime(marker.frame, rate));
    property(xml, "end", mltTime(marker.frame + marker.frames, rate));
    property(xml, "color", hexText(marker.colour.value_or(defaultColour)));
    xml.close();
}

} // namespace

ShotcutWriter::ShotcutWriter(Timeline theTimeline)
    : timeline{std::move(theTimeline)} {}

void ShotcutWriter::write(TextSink const& sink) const {
    auto const rate = timeline.count.rate;
    auto xml = XmlText{"mlt", ""};
    xml.attribute("LC_NUMERIC", "C");
    xml.attribute("version", "7.12.0");
    xml.attribute("title", timeline.title);
    xml.attribute("producer", "main");
    writeProfile(xml, rate);
    writeBlack(xml, timeline.length);
    writeTracks(xml, timeline.length);
    openRange(xml, "tractor", "main", timeline.length);
    property(xml, "shotcut", "1");
    xml.open("properties");
    xml.attribute("name", "shotcut:markers");
    for (auto number = 0; auto const& marker : timeline.markers) {
        writeMarker(xml, std::to_string(number++), marker, rate);
        sink(xml.take());
    }
    xml.close();
    track(xml, "background");
    track(xml, "playlist0");
    sink(xml.finish());
}

} // namespace workbench
