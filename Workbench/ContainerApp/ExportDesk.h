#pragma once

#include "Workbench/ContainerApp/CommentStore.h"
#include "Workbench/ContainerApp/ExportSettings.h"
#include "Workbench/ContainerApp/Exporter.h"
#include "Workbench/ContainerApp/Settings.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

struct ExportFormat;

// Starts and stops exports of the comments and keeps their history. Main thread only. Throws DatabaseError.
class ExportDesk {
public:
    // Told of each end of an export, and of each start.
    using Observer = std::function<void(ExportState state, std::string const& message)>;

    ExportDesk(CommentStore& comments, SequenceStore& sequences, Settings& settings, ExportHistory& history,
               Exporter& exporter);

    ExportDesk(ExportDesk const&) = delete;
    ExportDesk& operator=(ExportDesk const&) = delete;

    void setObserver(Observer theObserver) { observer = std::move(theObserver); }

    // None when the export has started, else why it has not.
    [[nodiscard]] std::optional<std::string> start(Json const& wanted);

    // From 0 to 1 while an export runs.
    [[nodiscard]] std::optional<double> progress() const;

    // Answers once nothing is left of the export: true when one ran and no file came of it.
    void cancel(std::function<void(bool)> answer);

private:
    [[nodiscard]] std::string begin(ExportSettings const& wanted, ExportFormat const& format);
    [[nodiscard]] std::string folderFor(ExportSettings const& wanted);
    void finish(std::int64_t id, ExportOutcome const& outcome);

    CommentStore& comments;
    SequenceStore& sequences;
    Settings& settings;
    ExportHistory& history;
    Exporter& exporter;
    Observer observer;
    std::size_t expectedPieces = 1; // of what runs
    std::vector<std::function<void(bool)>> waiting; // for the end of a cancelled export
};

// How a sequence counts for an export with these settings: by the editor's exact rate, else by the rate that
// the page was told. None without any rate. Throws OutputError for a label that is none at the rate.
[[nodiscard]] std::optional<FrameCount> frameCountFor(std::optional<HostSequence> const& sequence,
                                                      ExportSettings const& settings);

// The comments of `list` that belong into an export, each reply behind its parent.
[[nodiscard]] std::vector<Comment> chosen(std::vector<Comment> list, ExportSettings const& settings);

} // namespace workbench
