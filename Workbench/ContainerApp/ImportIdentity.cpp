#include "Workbench/ContainerApp/ImportIdentity.h"

#include "Workbench/ContainerApp/CommentList.h"
#include "Workbench/ContainerApp/ImportError.h"
#include "Workbench/ContainerApp/Timeline.h"

#include <glib.h>

#include <map>
#include <memory>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace workbench {

namespace {

// Enough to tell the comments of one sequence apart.
constexpr std::size_t digestDigits = 16;

using Saying = std::tuple<double, std::string, std::string>;

Saying sayingOf(ImportedComment const& comment) {
    return {comment.start, comment.author.value_or(""), comment.text.value_or("")};
}

std::string digestOf(ImportedComment const& comment) {
    auto const& [start, author, text] = sayingOf(comment);
    auto const whole = std::to_string(start) + '\n' + author + '\n' + text;
    auto const digest = std::unique_ptr<char, decltype(&g_free)>{
        g_compute_checksum_for_data(G_CHECKSUM_SHA256, reinterpret_cast<guchar const*>(whole.data()),
                                    whole.size()),
        g_free};
    return "import-" + std::string{digest.get()}.substr(0, digestDigits);
}

// Of several comments that say the same each is taken once.
class PresentSayings {
public:
    explicit PresentSayings(std::vector<Comment> const& present) {
        for (auto const& comment : present)
            identifiers.emplace(Saying{comment.start, comment.author, comment.text}, comment.id);
    }

    void leaveOut(std::string const& id) { taken.insert(id); }

    std::optional<std::string> take(ImportedComment const& comment) {
        auto const [begin, end] = identifiers.equal_range(sayingOf(comment));
        for (auto each = begin; each != end; ++each)
            if (taken.insert(each->second).second)
                return each->second;
        return {};
    }

private:
    std::multimap<Saying, std::string> identifiers;
    std::unordered_set<std::string> taken;
};

} // namespace

void identify(std::vector<ImportedComment>& imported, std::vector<Comment> const& present) {
    auto lines = std::unordered_map<std::string, std::size_t>{};
    auto sayings = PresentSayings{present};
    for (auto const& comment : imported) {
        if (!comment.id)
            continue;
        auto const [first, isNew] = lines.emplace(*comment.id, comment.line);
        if (!isNew)
            throw ImportError(comment.line, "the identifier \"" + *comment.id + "\" stands in line " +
                                                std::to_string(first->second) +
                                                " already: give this comment another one, or leave it empty");
        sayings.leaveOut(*comment.id);
    }
    for (auto& comment : imported) {
        if (comment.id)
            continue;
        comment.id = sayings.take(comment);
        auto const digest = comment.id ? std::string{} : digestOf(comment);
        for (auto number = 1; !comment.id; ++number) {
            auto id = digest + (number > 1 ? "-" + std::to_string(number) : "");
            if (lines.emplace(id, comment.line).second)
                comment.id = std::move(id);
        }
    }
}

void markKnownGuides(std::vector<ImportedComment>& guides, std::vector<Comment> const& present,
                     FrameRate rate) {
    auto timeline = timelineOf(
        {.title = {}, .count = FrameCount{.rate = rate}, .durationFrames = 0, .comments = threaded(present)});
    auto known = std::unordered_map<std::int64_t, TimelineMarker>{};
    for (auto& marker : oneOnEachFrame(std::move(timeline.markers)))
        known.emplace(marker.frame, std::move(marker));
    for (auto& guide : guides) {
        auto const found = known.find(frameAt(guide.start, rate));
        guide.isKnown = found != known.end() && joined(found->second.remarks, " / ") == guide.text &&
                        secondsOf(found->second.frames, rate) == guide.duration;
    }
}

void checkParents(std::vector<ImportedComment> const& imported, std::vector<Comment> const& present) {
    auto known = std::unordered_set<std::string>{};
    for (auto const& comment : present)
        known.insert(comment.id);
    for (auto const& comment : imported)
        known.insert(comment.id.value());
    for (auto const& comment : imported) {
        auto const parent = comment.parentId.value_or("");
        if (!parent.empty() && (parent == comment.id || !known.contains(parent)))
            throw ImportError(comment.line, "it answers \"" + parent +
                                                "\", which is no other comment of the file or the list: "
                                                "add that one, or empty \"parent\"");
    }
}

} // namespace workbench
