#include "Workbench/ContainerApp/ExportDesk.h"

#include "Workbench/ContainerApp/CommentList.h"
#include "Workbench/ContainerApp/ExportFormat.h"

#include <algorithm>
#include <sys/stat.h>
#include <unordered_set>
#include <utility>

namespace workbench {

namespace {

void checkFolder(std::string const& folder) {
    struct stat status{};
    if (folder.empty() || folder.front() != '/')
        throw wrongSetting("folder", folder, "a full path, which begins with \"/\"");
    if (::stat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        throw OutputError("there is no folder " + folder + ": make it, or choose another one");
}

ExportFormat const& formatOf(ExportSettings const& settings) {
    auto const* const format = findExportFormat(settings.format);
    if (!format)
        throw wrongSetting("format", settings.format, exportFormatNames());
    return *format;
}

void checkRate(ExportContent const& content, ExportFormat const& format) {
    if (format.needsRate && !content.count)
        throw OutputError("nobody knows the frame rate that the format \"" + std::string{format.name} +
                          R"(" counts in: open the sequence in the editor, or give the setting "frameRate")");
}

ExportContent contentFor(std::optional<HostSequence> const& sequence, std::vector<Comment> comments,
                         ExportSettings const& settings) {
    return {.title = sequence ? sequence->name : "",
            .count = frameCountFor(sequence, settings),
            .durationFrames = sequence ? sequence->durationFrames : 0,
            .comments = chosen(std::move(comments), settings)};
}

std::string sentenceFor(ExportOutcome const& outcome) {
    if (outcome.state == ExportState::Done)
        return "exported " + outcome.path;
    return outcome.state == ExportState::Cancelled ? "the export was cancelled"
                                                   : "the export failed: " + outcome.detail;
}

} // namespace

ExportDesk::ExportDesk(CommentStore& theComments, SequenceStore& theSequences, Settings& theSettings,
                       ExportHistory& theHistory, Exporter& theExporter)
    : comments{theComments}
    , sequences{theSequences}
    , settings{theSettings}
    , history{theHistory}
    , exporter{theExporter} {}

std::optional<std::string> ExportDesk::start(Json const& wanted) {
    try {
        auto const read = readExportSettings(wanted);
        auto const& format = formatOf(read);
        if (exporter.isRunning())
            return "an export is running already: wait for its end, or cancel it";
        observer(ExportState::Running, begin(read, format));
        return {};
    } catch (OutputError const& error) {
        return error.what();
    }
}

std::string ExportDesk::begin(ExportSettings const& wanted, ExportFormat const& format) {
    auto const key = wanted.sequence.value_or(sequences.activeKey());
    auto const sequence = sequences.description(key);
    auto const folder = folderFor(wanted);
    auto const otherwise = plainFileName(sequence ? sequence->name : "", "comments", "");
    auto const name = plainFileName(wanted.fileName.value_or(""), otherwise, std::string{format.extension});
    auto const content = contentFor(sequence, comments.comments(key), wanted);
    checkRate(content, format);
    auto const count = content.comments.size();
    expectedPieces = count + 1; // a beginning, and about one for each
    auto job = ExportJob{
        .file = OutputFile{folder, name}, .writer = format.writerFor(content), .onExists = wanted.onExists};
    auto const id = history.begin(sequences.find(key), std::string{format.name});
    exporter.start(std::move(job), [this, id](ExportOutcome const& outcome) { finish(id, outcome); });
    return "exporting " + std::to_string(count) + " comments to " + folder + "/" + name;
}

std::optional<double> ExportDesk::progress() const {
    if (!exporter.isRunning())
        return {};
    auto const share = static_cast<double>(exporter.pieces()) / static_cast<double>(expectedPieces);
    return std::min(share, 1.0);
}

void ExportDesk::cancel(std::function<void(bool)> answer) {
    if (!exporter.isRunning()) {
        answer(false);
        return;
    }
    waiting.push_back(std::move(answer));
    exporter.cancel();
}

std::string ExportDesk::folderFor(ExportSettings const& wanted) {
    auto folder = wanted.folder ? *wanted.folder : outputFolder(settings);
    checkFolder(folder);
    return folder;
}

void ExportDesk::finish(std::int64_t id, ExportOutcome const& outcome) {
    for (auto const& answer : std::exchange(waiting, {}))
        answer(outcome.state == ExportState::Cancelled);
    try {
        history.finish(id, outcome.state, outcome.path, outcome.detail);
    } catch (DatabaseError const& error) {
        observer(ExportState::Failed, std::string{"the export's end cannot be noted: "} + error.what());
    }
    observer(outcome.state, sentenceFor(outcome));
}

std::optional<FrameCount> frameCountFor(std::optional<HostSequence> const& sequence,
                                        ExportSettings const& settings) {
    auto rate = sequence ? sequence->rate : std::nullopt;
    if (!rate && settings.frameRate)
        rate = rateFromRounded(*settings.frameRate);
    if (!rate)
        return {};
    auto count = FrameCount{.rate = *rate};
    if (sequence) {
        count.firstFrame = sequence->firstFrame;
        count.dropFrame = sequence->dropFrame;
    }
    if (!settings.timecodeStart)
        return count;
    count.dropFrame = count.dropFrame || settings.timecodeStart->find(';') != std::string::npos;
    auto const first = frameOfLabel(*settings.timecodeStart, count);
    if (!first)
        throw wrongSetting("timecodeStart", *settings.timecodeStart,
                           "a timecode of the sequence's rate, as \"01:00:00:00\"");
    count.firstFrame = *first;
    return count;
}

std::vector<Comment> chosen(std::vector<Comment> list, ExportSettings const& settings) {
    auto left = std::unordered_set<std::string>{};
    auto result = std::vector<Comment>{};
    for (auto& comment : threaded(std::move(list))) {
        auto const& parent = comment.parentId;
        auto const isLeft = parent ? left.contains(*parent) : settings.openOnly && comment.resolved;
        if (isLeft)
            left.insert(comment.id);
        else if (!parent || settings.replies)
            result.push_back(std::move(comment));
    }
    return result;
}

} // namespace workbench
