#include "Workbench/ContainerApp/Timeline.h"

#include "Workbench/ContainerApp/OutputFile.h"

#include <glib.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <numeric>
#include <unordered_map>
#include <utility>

namespace workbench {

namespace {

constexpr char const* noText = "(no text)";
constexpr char const* noTitle = "Comments";

// With a rate within these bounds, the milliseconds of every frame stay below 2^63.
constexpr std::int64_t lastFrame = (std::int64_t{1} << 31) - 3;
constexpr std::int64_t largestNumerator = 1'000'000'000;
constexpr std::int64_t largestDenominator = 1'000'000;

FrameCount withinBounds(FrameCount count) {
    auto& rate = count.rate;
    auto const common = std::gcd(rate.numerator, rate.denominator);
    rate = {rate.numerator / common, rate.denominator / common};
    if (rate.numerator > largestNumerator || rate.denominator > largestDenominator)
        throw OutputError("a rate of " + std::to_string(rate.numerator) + "/" +
                          std::to_string(rate.denominator) +
                          " frames in a second cannot be exported: open the sequence in the editor again");
    count.firstFrame = std::clamp<std::int64_t>(count.firstFrame, 0, lastFrame);
    return count;
}

std::string orElse(std::string const& text, char const* otherwise) {
    return text.empty() ? otherwise : text;
}

std::string remarkOf(Comment const& comment) {
    auto const author = oneLine(comment.author);
    return (author.empty() ? "" : author + ": ") + orElse(oneLine(comment.text), noText);
}

TimelineMarker markerOf(Comment const& comment, FrameRate rate) {
    auto marker = TimelineMarker{};
    marker.frame = std::min(frameAt(comment.start, rate), lastFrame);
    if (comment.duration > 0) {
        auto const end = std::min(frameAt(comment.start + comment.duration, rate), lastFrame + 1);
        marker.frames = std::max<std::int64_t>(end - marker.frame, 1);
    }
    marker.title = orElse(oneLine(comment.text), noText);
    marker.remarks = {remarkOf(comment)};
    marker.colour = readColour(comment.colour.value_or(""));
    marker.resolved = comment.resolved;
    return marker;
}

// Those of one frame stay in their order.
std::vector<TimelineMarker> byFrame(std::vector<TimelineMarker> markers) {
    auto sorted = std::multimap<std::int64_t, TimelineMarker>{};
    for (auto& marker : markers)
        sorted.emplace(marker.frame, std::move(marker));
    markers.clear();
    for (auto& [frame, marker] : sorted)
        markers.push_back(std::move(marker));
    return markers;
}

std::vector<TimelineMarker> markersOf(std::vector<Comment> const& comments, FrameRate rate) {
    auto markers = std::vector<TimelineMarker>{};
    auto placeOf = std::unordered_map<std::string, std::size_t>{};
    for (auto const& comment : comments) {
        auto const parent = comment.parentId ? placeOf.find(*comment.parentId) : placeOf.end();
        if (parent != placeOf.end()) {
            auto const place = parent->second;
            markers[place].remarks.push_back(remarkOf(comment));
            placeOf.emplace(comment.id, place);
            continue;
        }
        placeOf.emplace(comment.id, markers.size());
        markers.push_back(markerOf(comment, rate));
    }
    return byFrame(std::move(markers));
}

std::int64_t lengthOf(std::vector<TimelineMarker> const& markers, std::int64_t duration) {
    auto length = std::clamp<std::int64_t>(duration, 1, lastFrame + 1);
    for (auto const& marker : markers)
        length = std::max(length, marker.frame + std::max<std::int64_t>(marker.frames, 1));
    return length;
}

bool isSeen(gunichar character) {
    return !g_unichar_isspace(character) && !g_unichar_iscntrl(character) && character != 0x2028 &&
           character != 0x2029;
}

} // namespace

Timeline timelineOf(ExportContent const& content) {
    auto timeline = Timeline{};
    timeline.title = orElse(oneLine(content.title), noTitle);
    timeline.count = withinBounds(content.count.value());
    timeline.markers = markersOf(content.comments, timeline.count.rate);
    timeline.length = lengthOf(timeline.markers, content.durationFrames);
    return timeline;
}

std::vector<TimelineMarker> oneOnEachFrame(std::vector<TimelineMarker> markers) {
    auto result = std::vector<TimelineMarker>{};
    for (auto& marker : markers) {
        if (result.empty() || result.back().frame != marker.frame) {
            result.push_back(std::move(marker));
            continue;
        }
        auto& kept = result.back();
        kept.frames = std::max(kept.frames, marker.frames);
        kept.title += " / " + marker.title;
        std::ranges::move(marker.remarks, std::back_inserter(kept.remarks));
        kept.colour = kept.colour ? kept.colour : marker.colour;
        kept.resolved = kept.resolved && marker.resolved;
    }
    return result;
}

std::string joined(std::vector<std::string> const& remarks, std::string_view separator) {
    auto text = std::string{};
    for (auto const& remark : remarks) {
        text += text.empty() ? "" : separator;
        text += remark;
    }
    return text;
}

std::string oneLine(std::string const& text) {
    auto const valid = std::unique_ptr<char, decltype(&g_free)>{
        g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())), g_free};
    auto line = std::string{};
    auto isParted = false;
    for (char const* at = valid.get(); *at != '\0';) {
        char const* const next = g_utf8_find_next_char(at, nullptr);
        if (isSeen(g_utf8_get_char(at))) {
            line += isParted && !line.empty() ? " " : "";
            line.append(at, next);
            isParted = false;
        } else {
            isParted = true;
        }
        at = next;
    }
    return line;
}

} // namespace workbench
