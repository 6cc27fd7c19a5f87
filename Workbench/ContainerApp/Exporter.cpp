#include "Workbench/ContainerApp/Exporter.h"

#include <atomic>
#include <exception>
#include <string_view>
#include <utility>

namespace workbench {

namespace {

// Text is handed to the kernel in pieces of this size.
constexpr std::size_t pieceSize = 64UL * 1024;

enum class Stage { Writing, Publishing, Cancelled };

// Between "cancelled" and "has its name" one of the two wins, and both sides know which.
bool advance(std::atomic<Stage>& stage, Stage to) {
    auto writing = Stage::Writing;
    return stage.compare_exchange_strong(writing, to);
}

// Ends a writer in its middle.
class Stopped : public std::exception {};

// Between a writer and its file: hands on whole pieces until the export is cancelled.
class Spool {
public:
    Spool(OutputFile& theFile, std::atomic<Stage> const& theStage, std::atomic<std::size_t>& thePieces)
        : file{theFile}
        , stage{theStage}
        , pieces{thePieces} {}

    void put(std::string_view text) {
        if (stage == Stage::Cancelled)
            throw Stopped{};
        ++pieces;
        piece += text;
        if (piece.size() >= pieceSize)
            handOn();
    }

    void finish() {
        handOn();
        file.flush();
    }

private:
    void handOn() {
        file.write(piece);
        piece.clear();
    }

    OutputFile& file;
    std::atomic<Stage> const& stage;
    std::atomic<std::size_t>& pieces;
    std::string piece;
};

ExportOutcome perform(ExportJob job, std::atomic<Stage>& stage, std::atomic<std::size_t>& pieces) {
    try {
        auto spool = Spool{job.file, stage, pieces};
        job.writer->write([&spool](std::string_view text) { spool.put(text); });
        spool.finish();
        if (!advance(stage, Stage::Publishing))
            return {ExportState::Cancelled, {}, {}};
        return {ExportState::Done, job.file.publish(job.onExists), {}};
    } catch (Stopped const&) {
        return {ExportState::Cancelled, {}, {}};
    } catch (OutputError const& error) {
        return {ExportState::Failed, {}, error.what()};
    }
}

} // namespace

struct Exporter::Run {
    std::atomic<Stage> stage = Stage::Writing;
    std::atomic<std::size_t> pieces = 0;
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

std::size_t Exporter::pieces() const {
    return run ? run->pieces.load() : 0;
}

void Exporter::start(ExportJob job, Done done) {
    run = std::make_shared<Run>();
    run->done = std::move(done);
    thread = std::thread([this, job = std::move(job), started = run, weak = std::weak_ptr{run}]() mutable {
        auto const outcome = perform(std::move(job), started->stage, started->pieces);
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
