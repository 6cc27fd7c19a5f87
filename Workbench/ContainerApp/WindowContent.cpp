#include "Workbench/ContainerApp/WindowContent.h"

#include "Workbench/ContainerApp/CommentList.h"

#include <glib.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>

namespace workbench {

namespace {

constexpr int newestExports = 20;

struct UnrefTime {
    void operator()(GDateTime* time) const { g_date_time_unref(time); }
};

using DateTime = std::unique_ptr<GDateTime, UnrefTime>;

struct Free {
    void operator()(char* text) const { g_free(text); }
};

// Without a rate there are no frames to count.
std::string clockTime(double seconds) {
    auto const milliseconds = std::llround(std::min(seconds, 1e12) * 1000);
    char text[64];
    std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld.%03lld", milliseconds / 3'600'000,
                  milliseconds / 60'000 % 60, milliseconds / 1000 % 60, milliseconds % 1000);
    return text;
}

std::string timeOf(Comment const& comment, std::optional<HostSequence> const& sequence) {
    if (!sequence || !sequence->rate)
        return clockTime(comment.start);
    auto const count = FrameCount{*sequence->rate, sequence->firstFrame, sequence->dropFrame};
    return timecode(frameAt(comment.start, count.rate), count);
}

std::string localTimeOfDay(std::string const& iso) {
    auto const utc = DateTime{g_date_time_new_from_iso8601(iso.c_str(), nullptr)};
    if (!utc)
        return {};
    auto const local = DateTime{g_date_time_to_local(utc.get())};
    auto const text = std::unique_ptr<char, Free>{g_date_time_format(local.get(), "%H:%M")};
    return text.get();
}

std::string counted(std::size_t count, char const* one, char const* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string summaryOf(std::vector<Comment> const& comments) {
    auto const isTop = [](Comment const& comment) { return !comment.parentId; };
    auto const isResolved = [&](Comment const& comment) { return isTop(comment) && comment.resolved; };
    auto const top = static_cast<std::size_t>(std::count_if(comments.begin(), comments.end(), isTop));
    auto const resolved =
        static_cast<std::size_t>(std::count_if(comments.begin(), comments.end(), isResolved));
    if (top == 0)
        return "No comments";
    return counted(top, "comment", "comments") + ", " + std::to_string(resolved) + " resolved";
}

// A sequence that no editor has described bears the key that a page gave it.
std::string nameOf(HostSequence const& sequence) {
    if (sequence.key == defaultSequence)
        return "Comments without a sequence";
    return sequence.name.empty() ? sequence.key : sequence.name;
}

std::vector<WindowContent::SequenceRow> sequencesIn(SequenceStore& sequences) {
    auto const active = sequences.activeKey();
    auto const described = sequences.description(active);
    auto rows = std::vector<WindowContent::SequenceRow>{};
    rows.push_back({.key = active, .name = described ? nameOf(*described) : "No sequence open"});
    for (auto const& sequence : sequences.all())
        if (sequence.key != active)
            rows.push_back({.key = sequence.key, .name = nameOf(sequence)});
    return rows;
}

// As people write it: what lies in their home folder begins with "~".
std::string shownPath(std::string const& path) {
    auto const home = std::string{g_get_home_dir()};
    auto const isBelow = path.starts_with(home) && (path.size() == home.size() || path[home.size()] == '/');
    return isBelow && !home.empty() ? "~" + path.substr(home.size()) : path;
}

std::string describeExport(ExportRecord const& record) {
    switch (record.state) {
    case ExportState::Running:
        return "Exporting ...";
    case ExportState::Done:
        return shownPath(record.path);
    case ExportState::Cancelled:
        return "Cancelled";
    case ExportState::Failed:
        break;
    }
    return "Failed: " + record.detail;
}

} // namespace

WindowContent readWindowContent(Store& store, std::string const& key) {
    auto content = WindowContent{};
    content.sequences = sequencesIn(store.sequences);
    auto const isKnown = std::ranges::find(content.sequences, key, &WindowContent::SequenceRow::key) !=
                         content.sequences.end();
    content.shown = isKnown ? key : store.sequences.activeKey();
    auto const sequence = store.sequences.description(content.shown);
    auto comments = store.comments.comments(content.shown);
    content.folder = shownPath(namedOutputFolder(store.settings));
    content.summary = summaryOf(comments);
    for (auto const& comment : threaded(std::move(comments)))
        content.comments.push_back({.time = timeOf(comment, sequence),
                                    .author = comment.author,
                                    .text = comment.text,
                                    .isReply = comment.parentId.has_value(),
                                    .isResolved = comment.resolved});
    for (auto const& record : store.exports.newest(newestExports))
        content.exports.push_back({.time = localTimeOfDay(record.startedAt),
                                   .text = describeExport(record),
                                   .state = record.state});
    return content;
}

} // namespace workbench
