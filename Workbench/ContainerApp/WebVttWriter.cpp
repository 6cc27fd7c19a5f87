#include "Workbench/ContainerApp/WebVttWriter.h"

#include <string>

namespace workbench {

namespace {

// A tag would be an error in a chapter, an arrow one in any cue.
std::string escaped(std::string const& text) {
    auto result = std::string{};
    for (auto const character : text) {
        if (character == '&')
            result += "&amp;";
        else if (character == '<')
            result += "&lt;";
        else if (character == '>')
            result += "&gt;";
        else
            result += character;
    }
    return result;
}

} // namespace

WebVttWriter::WebVttWriter(Timeline const& timeline)
    : rate{timeline.count.rate}
    , chapters{chaptersOf(timeline)} {}

void WebVttWriter::write(TextSink const& sink) const {
    sink("WEBVTT\n");
    for (auto const& chapter : chapters)
        sink("\n" + clockTime(chapter.begin, rate) + " --> " + clockTime(chapter.end, rate) + "\n" +
             escaped(joined(chapter.remarks, "\n")) + "\n");
}

} // namespace workbench
