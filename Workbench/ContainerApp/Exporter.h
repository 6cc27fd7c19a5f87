#pragma once

#include "Workbench/ContainerApp/CommentWriter.h"
#include "Workbench/ContainerApp/ExportHistory.h"
#include "Workbench/ContainerApp/OutputFile.h"

#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace workbench {

struct ExportJob {
    OutputFile file;
    std::unique_ptr<CommentWriter> writer;
    OnExists onExists = OnExists::Rename;
};

struct ExportOutcome {
    ExportState state = ExportState::Done;
    std::string path; // of the finished file
    std::string detail; // why it failed
};

// Writes one file at a time on a thread of its own. All operations, and `done`, belong to the main thread.
class Exporter {
public:
    using Done = std::function<void(ExportOutcome const&)>;

    // Runs a task on the main thread, on a later turn. Called on any thread.
    using Post = std::function<void(std::function<void()>)>;

    explicit Exporter(Post post);

    // Cancels what runs and waits for it; `done` is not called any more.
    ~Exporter();

    Exporter(Exporter const&) = delete;
    Exporter& operator=(Exporter const&) = delete;

    [[nodiscard]] bool isRunning() const { return run != nullptr; }

    // How many pieces of its text what runs has written; 0 when nothing runs.
    [[nodiscard]] std::size_t pieces() const;

    // Nothing may run.
    void start(ExportJob job, Done done);

    // Asks what runs to stop. It may have got its name already: `done` tells.
    void cancel();

private:
    struct Run;

    void finish(std::shared_ptr<Run> const& finished, ExportOutcome const& outcome);

    Post post;
    std::shared_ptr<Run> run; // shared with the task that reports it
    std::thread thread;
};

} // namespace workbench
