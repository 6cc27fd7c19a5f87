#pragma once

#include "Workbench/ContainerApp/CommentWriter.h"
#include "Workbench/ContainerApp/ExportContent.h"
#include "Workbench/ContainerApp/Json.h"
#include "Workbench/ContainerApp/Timeline.h"

#include <string>
#include <string_view>
#include <vector>

namespace workbench {

struct SampleRate {
    std::string_view name;
    FrameCount count; // begins at one hour
};

// 23.976, 25, 29.97 with dropped labels, 59.94 with and without.
[[nodiscard]] std::vector<SampleRate> const& sampleRates();

inline constexpr auto pal = FrameCount{{25, 1}, 0, false};

// On both sides of where labels are left out, and where roundings of the rate would show.
[[nodiscard]] std::vector<std::int64_t> const& telltaleFrames();

// The exact time of a frame, as near as a number gets.
[[nodiscard]] double secondsAt(std::int64_t frame, FrameRate rate);

[[nodiscard]] Comment commentAt(double start, std::string const& text);

// One comment without an author at each of these frames, "Comment 1" and so on.
[[nodiscard]] ExportContent contentAt(std::vector<std::int64_t> const& frames, FrameCount const& count);

// Two comments on frames 3 and 7; the first is Ana's, and Bo replies to it: "Larger?".
[[nodiscard]] ExportContent contentWithReply(FrameCount const& count);

// A text that somebody may have typed, and what is to be seen of it in one line.
struct HostileText {
    std::string typed;
    std::string seen;
};

[[nodiscard]] std::vector<HostileText> const& hostileTexts();

// One comment with each of the hostile texts, on the frames from 0.
[[nodiscard]] ExportContent hostileContent(FrameCount const& count);

// 5,000 comments on frames 0, 10 and so on.
[[nodiscard]] ExportContent longContent(FrameCount const& count);

[[nodiscard]] std::string written(CommentWriter const& writer);

// "30000/1001".
[[nodiscard]] std::string rateText(FrameRate rate);

// What the reader `name` of read_export.py finds in a file with these contents, perhaps with a rate to count
// in. Discarded where it finds a fault.
[[nodiscard]] Json readBack(std::string const& name, std::string const& contents,
                            std::string const& arguments = {});

// What the writer of one format makes of a content, and what the reader finds in that.
template <typename Writer>
struct ExportFormat {
    char const* reader;

    [[nodiscard]] std::string document(ExportContent const& content) const {
        return written(Writer{timelineOf(content)});
    }

    [[nodiscard]] Json read(ExportContent const& content) const {
        return readBack(reader, document(content));
    }
};

// The labels that MLT gives to these frames of a sequence.
[[nodiscard]] Json labelsByMlt(std::vector<std::int64_t> frames, FrameCount const& count);

// The member `key` of each.
[[nodiscard]] Json each(Json const& list, std::string const& key);

} // namespace workbench
