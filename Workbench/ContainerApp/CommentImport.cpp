#include "Workbench/ContainerApp/CommentImport.h"

#include "Workbench/ContainerApp/CommentReader.h"
#include "Workbench/ContainerApp/CsvReader.h"
#include "Workbench/ContainerApp/ImportError.h"
#include "Workbench/ContainerApp/ImportIdentity.h"
#include "Workbench/ContainerApp/KdenliveReader.h"
#include "Workbench/ContainerApp/OutputFile.h"
#include "Workbench/ContainerApp/TextFile.h"
#include "Workbench/ContainerApp/TextRepair.h"

#include <unordered_map>
#include <utility>

namespace workbench {

namespace {

// The first thing that is to be seen in a text.
char firstCharacter(std::string_view text) {
    auto const begin = text.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
    return begin == std::string_view::npos ? '\0' : text[begin];
}

// `known` where the file has no place for a member.
Comment completed(ImportedComment const& imported, Comment const& known) {
    auto comment = known;
    comment.id = imported.id.value();
    comment.start = imported.start;
    comment.duration = imported.duration.value_or(known.duration);
    comment.author = imported.author.value_or(known.author);
    comment.text = imported.text.value_or(known.text);
    comment.resolved = imported.resolved.value_or(known.resolved);
    auto const noneIfEmpty = [](std::string const& text) {
        return text.empty() ? std::nullopt : std::optional{text};
    };
    if (imported.parentId)
        comment.parentId = noneIfEmpty(*imported.parentId);
    if (imported.colour)
        comment.colour = noneIfEmpty(*imported.colour);
    return comment;
}

bool isSame(Comment const& a, Comment const& b) {
    return a.id == b.id && a.parentId == b.parentId && a.author == b.author && a.text == b.text &&
           a.start == b.start && a.duration == b.duration && a.colour == b.colour && a.resolved == b.resolved;
}

void put(Json& object, char const* key, std::optional<std::string> const& text) {
    if (text)
        object[key] = *text;
    else
        object.erase(key);
}

// The JSON of a comment that is `wanted` and was `known`: what the file does not speak of, as drawings or the
// author's picture, stays as the page sent it.
Json described(Comment const& wanted, Comment const& known, Json raw) {
    raw["id"] = wanted.id;
    if (raw.size() == 1 || wanted.start != known.start)
        raw["seconds"] = wanted.start;
    if (wanted.duration != known.duration)
        raw["duration"] = wanted.duration;
    if (wanted.text != known.text)
        raw["text"] = wanted.text;
    if (wanted.author != known.author)
        raw["author"] = wanted.author;
    if (wanted.resolved != known.resolved)
        raw["resolved"] = wanted.resolved;
    if (wanted.parentId != known.parentId)
        put(raw, "parentId", wanted.parentId);
    if (wanted.colour != known.colour) {
        raw.erase("colour");
        put(raw, "color", wanted.colour);
    }
    return raw;
}

CommentDraft draftOf(Comment const& wanted, Json const& described) {
    auto draft = CommentDraft{};
    draft.comment = wanted;
    draft.hasStart = true;
    draft.raw = described.dump(-1, ' ', false, Json::error_handler_t::replace);
    return draft;
}

std::optional<FrameCount> countOf(std::optional<HostSequence> const& sequence) {
    if (!sequence || !sequence->rate)
        return {};
    return FrameCount{*sequence->rate, sequence->firstFrame, sequence->dropFrame};
}

std::vector<ImportedComment> readGuides(std::string_view text, std::optional<HostSequence> const& sequence,
                                        std::vector<Comment> const& present) {
    if (!sequence || !sequence->rate)
        throw ImportError("nobody knows the frame rate that its guides count in: open the sequence in the "
                          "editor, and import them then");
    auto guides = readKdenliveGuides(text, *sequence->rate);
    markKnownGuides(guides, present, *sequence->rate);
    return guides;
}

std::vector<ImportedComment> parse(std::string_view text, std::optional<HostSequence> const& sequence,
                                   std::vector<Comment> const& present) {
    auto const first = firstCharacter(text);
    if (first == '{' || first == '<')
        throw ImportError(
            "it holds neither a table of comments nor a list of guides: export one of them (the "
            "guides of a project from its list of guides), and import that file");
    return first == '[' ? readGuides(text, sequence, present) : readCsvComments(text, countOf(sequence));
}

void repair(ImportedComment& comment) {
    for (auto* text : {&comment.id, &comment.parentId, &comment.author, &comment.text, &comment.colour})
        if (*text)
            *text = carriedByBus(**text);
}

} // namespace

CommentImport::CommentImport(CommentStore& theComments, SequenceStore& theSequences)
    : comments{theComments}
    , sequences{theSequences} {}

ImportOutcome CommentImport::read(std::string const& file, std::string const& sequenceKey) {
    auto const present = comments.comments(sequenceKey);
    try {
        auto imported = parse(textOfFile(file), sequences.description(sequenceKey), present);
        for (auto& comment : imported)
            repair(comment);
        identify(imported, present);
        checkParents(imported, present);
        return merge(imported, present, sequenceKey);
    } catch (ImportError const& error) {
        throw ImportError(file + ": " + error.what());
    } catch (OutputError const& error) {
        throw ImportError(file + ": " + error.what());
    }
}

ImportOutcome CommentImport::merge(std::vector<ImportedComment> const& imported,
                                   std::vector<Comment> const& present, std::string const& sequenceKey) {
    auto known = std::unordered_map<std::string, Comment const*>{};
    for (auto const& comment : present)
        known.emplace(comment.id, &comment);
    auto outcome = ImportOutcome{};
    auto drafts = std::vector<CommentDraft>{};
    for (auto const& each : imported) {
        if (each.isKnown) {
            ++outcome.known;
            continue;
        }
        auto const found = known.find(each.id.value());
        auto const before = found == known.end() ? Comment{} : *found->second;
        auto const wanted = completed(each, before);
        if (found != known.end() && isSame(wanted, before)) {
            ++outcome.known;
            continue;
        }
        ++(found == known.end() ? outcome.added : outcome.changed);
        auto const raw = found == known.end() ? "{}" : comments.raw(sequenceKey, wanted.id);
        drafts.push_back(draftOf(wanted, described(wanted, before, Json::parse(raw))));
    }
    comments.merge(sequenceKey, drafts);
    return outcome;
}

std::string sentenceFor(ImportOutcome const& outcome) {
    auto const count = outcome.added + outcome.changed + outcome.known;
    return "imported " + std::to_string(count) + (count == 1 ? " comment: " : " comments: ") +
           std::to_string(outcome.added) + " new, " + std::to_string(outcome.changed) + " changed, " +
           std::to_string(outcome.known) + " known already";
}

} // namespace workbench
