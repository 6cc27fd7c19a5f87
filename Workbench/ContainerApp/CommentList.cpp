#include "Workbench/ContainerApp/CommentList.h"

#include <unordered_map>
#include <utility>

namespace workbench {

namespace {

void append(std::vector<CommentDraft>& list, CommentDraft draft) {
    auto replies = std::exchange(draft.replies, {});
    auto const parent = draft.comment.id;
    list.push_back(std::move(draft));
    for (auto& reply : replies) {
        reply.comment.parentId = parent;
        append(list, std::move(reply));
    }
}

// Gives the comments without a time that of their nearest ancestor that has one.
class StartInheritance {
public:
    StartInheritance(std::vector<CommentDraft>& theList, KnownStart const& theKnownStart)
        : list{theList}
        , knownStart{theKnownStart} {}

    // False when an identifier stands in the list twice.
    bool takeIdentifiers() {
        for (auto& draft : list)
            if (!drafts.emplace(draft.comment.id, &draft).second)
                return false;
        return true;
    }

    bool settle(CommentDraft& draft) {
        auto open = std::vector<CommentDraft*>{};
        auto const start = walkUp(draft, open);
        for (auto* each : open) {
            each->comment.start = start.value_or(0);
            each->hasStart = start.has_value();
        }
        return start.has_value();
    }

private:
    std::optional<double> walkUp(CommentDraft& draft, std::vector<CommentDraft*>& open) {
        auto* each = &draft;
        // More steps than there are comments: the replies run in a circle.
        while (!each->hasStart && open.size() < list.size()) {
            open.push_back(each);
            if (!each->comment.parentId)
                return {};
            auto const parent = drafts.find(*each->comment.parentId);
            if (parent == drafts.end())
                return knownStart(*each->comment.parentId);
            each = parent->second;
        }
        return each->hasStart ? std::optional{each->comment.start} : std::nullopt;
    }

    std::vector<CommentDraft>& list;
    KnownStart const& knownStart;
    std::unordered_map<std::string, CommentDraft*> drafts;
};

using Places = std::vector<std::size_t>;

// Who answers whom, by place in the list.
struct Threads {
    Places roots;
    std::unordered_map<std::string, Places> replies;
};

Threads threadsOf(std::vector<Comment> const& comments) {
    auto threads = Threads{};
    for (auto const& comment : comments)
        threads.replies.try_emplace(comment.id);
    for (std::size_t place = 0; place < comments.size(); ++place) {
        auto const& parent = comments[place].parentId;
        auto const found = parent ? threads.replies.find(*parent) : threads.replies.end();
        (found != threads.replies.end() ? found->second : threads.roots).push_back(place);
    }
    return threads;
}

} // namespace

std::optional<std::vector<CommentDraft>> flatten(std::vector<CommentDraft> drafts,
                                                 KnownStart const& knownStart) {
    auto list = std::vector<CommentDraft>{};
    for (auto& draft : drafts)
        append(list, std::move(draft));
    auto starts = StartInheritance{list, knownStart};
    if (!starts.takeIdentifiers())
        return {};
    for (auto& draft : list)
        if (!starts.settle(draft))
            return {};
    return list;
}

std::vector<Comment> threaded(std::vector<Comment> comments) {
    auto const threads = threadsOf(comments);
    auto taken = std::vector<bool>(comments.size());
    auto result = std::vector<Comment>{};
    result.reserve(comments.size());
    auto const take = [&](std::size_t root) {
        auto waiting = Places{root};
        while (!waiting.empty()) {
            auto const place = waiting.back();
            waiting.pop_back();
            if (taken[place])
                continue;
            taken[place] = true;
            auto const& replies = threads.replies.at(comments[place].id);
            waiting.insert(waiting.end(), replies.rbegin(), replies.rend());
            result.push_back(std::move(comments[place]));
        }
    };
    for (auto const root : threads.roots)
        take(root);
    // What is left hangs in a circle; it is kept all the same.
    for (std::size_t place = 0; place < comments.size(); ++place)
        take(place);
    return result;
}

} // namespace workbench
