#include "Workbench/ContainerApp/Exporter.h"

#include <atomic>
#include <utility>

namespace workbench {

namespace {

// Rows are handed to the kernel in pieces of this size.
constexpr std::size_t pieceSize = 64UL * 1024;

enum class Stage { Writing, Publishing, Cancelled };

// Between "cancelled" and "has its name" one of the two wins, and both sides know which.
bool advance(std::atomic<Stage>& stage, Stage to) {
    auto writing = Stage::Writing;
    return stage.compare_exchange_strong(writing, to);
}

// False when it was cancelled.
bool writeRows(ExportJob& job, std::atomic<Stage> const& stage) {
    auto piece = CsvWriter::header();
    for (auto const& comment : job.comments) {
        if (stage == Stage::Cancelled)
            return false;
        piece += job.writer.line(comment);
        if (piece.size() < pieceSize)
            continue;
        job.file.write(piece);
        piece.clear();
    }
    job.file.write(piece);
    job.file.flush();
    return true;
}

ExportOutcome perform(ExportJob job, std::atomic<Stage>& stage) {
    try {
        if (!writeRows(job, stage) || !advance(stage, Stage::Publishing))
            return {ExportState::Cancelled, {}, {}};
        return {ExportState::Done, job.file.publish(job.onExists), {}};
    } catch (OutputError const& error) {
        return {ExportState::Failed, {}, error.what()};
    }
}

} // namespace

struct Exporter::Run {
    std::atomic<Stage> stage = Stage::Writing;
    Done done;
};

Exporter::Exporter(Post thePost)
    : post{std::move(thePost)} {}

Exporter::~Exporter() {
    cancel();
    run.reset();
    if (thread.joinable())
        thread.join();
}

void Exporter::start(ExportJob job, Done done) {
    run = std::make_shared<Run>();
    run->done = std::move(done);
    thread = std::thread([this, job = std::move(job), started = run, weak = std::weak_ptr{run}]() mutable {
        auto const outcome = perform(std::move(job), started->stage);
        started.reset();
        post([this, weak, outcome] {
            // Alive as long as the exporter has not gone and waits for this very run.
            if (auto const finished = weak.lock())
                finish(finished, outcome);
        });
    });
}

void Exporter::cancel() {
    if (run)
        advance(run->stage, Stage::Cancelled);
}

void Exporter::finish(std::shared_ptr<Run> const& finished, ExportOutcome const& outcome) {
    thread.join();
    run.reset();
    finished->done(outcome);
}

} // namespace workbench
