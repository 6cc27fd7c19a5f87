#include "Workbench/ContainerApp/CsvWriter.h"
#include "Workbench/ContainerApp/ExporterFixture.h"

#include <atomic>
#include <csignal>
#include <future>
#include <sys/resource.h>

namespace workbench {

namespace {

// No file of this process may grow beyond so many bytes while it lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(unsigned long bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &before);
        auto const limit = rlimit{bytes, before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }

    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &before); }

    FileSizeLimit(FileSizeLimit const&) = delete;
    FileSizeLimit& operator=(FileSizeLimit const&) = delete;

private:
    rlimit before{};
};

// Stops in its middle until it has been cancelled.
class PausedWriter : public CommentWriter {
public:
    PausedWriter(std::promise<void>& theBegun, std::shared_future<void> theCancelled,
                 std::atomic<bool>& theHasGoneOn)
        : begun{theBegun}
        , cancelled{std::move(theCancelled)}
        , hasGoneOn{theHasGoneOn} {}

    void write(TextSink const& sink) const override {
        sink("one");
        begun.set_value();
        cancelled.wait();
        sink("two");
        hasGoneOn = true;
    }

private:
    std::promise<void>& begun;
    std::shared_future<void> cancelled;
    std::atomic<bool>& hasGoneOn;
};

std::vector<Comment> manyComments(int count) {
    auto comments = std::vector<Comment>(static_cast<std::size_t>(count));
    for (auto number = 0; auto& comment : comments)
        comment.id = "c" + std::to_string(number++);
    return comments;
}

class ExporterTest : public ExporterFixture {
protected:
    ExportJob job(int count, OnExists onExists = OnExists::Rename) {
        return {OutputFile{folder.path(), "x.csv"},
                std::make_unique<CsvWriter>(std::nullopt, manyComments(count)), onExists};
    }

    ExportOutcome outcomeOf(ExportJob wanted) {
        auto outcome = std::optional<ExportOutcome>{};
        exporter.start(std::move(wanted), [&](ExportOutcome const& result) { outcome = result; });
        EXPECT_TRUE(queue.runOne());
        return outcome.value();
    }
};

} // namespace

TEST_F(ExporterTest, WritesAFileAndNothingElse) {
    auto const outcome = outcomeOf(job(3));
    EXPECT_EQ(ExportState::Done, outcome.state);
    EXPECT_EQ(folder / "x.csv", outcome.path);
    EXPECT_EQ("x.csv", folder.names());
    EXPECT_EQ(CsvWriter::header() + "c0,,,0,0,,,false,,\r\nc1,,,0,0,,,false,,\r\nc2,,,0,0,,,false,,\r\n",
              contentsOf(outcome.path));
}

TEST_F(ExporterTest, GivesTheFileItsNameOnlyWhenItIsWhole) {
    auto const started = job(10);
    EXPECT_EQ(std::string::npos, folder.names().find("x.csv ")) << folder.names();
    EXPECT_EQ(0U, folder.names().find(".x.csv.")) << folder.names();
}

TEST_F(ExporterTest, LeavesNothingOfAFileThatWasNotPublished) {
    {
        auto const started = job(10);
    }
    EXPECT_EQ("", folder.names());
}

TEST_F(ExporterTest, FindsAnotherNameForATakenOne) {
    writeFile(folder / "x.csv", "old");
    writeFile(folder / "x (2).csv", "older");
    EXPECT_EQ(folder / "x (3).csv", outcomeOf(job(1)).path);
    EXPECT_EQ("old", contentsOf(folder / "x.csv"));
}

TEST_F(ExporterTest, ReplacesAFileWhenAskedTo) {
    writeFile(folder / "x.csv", "old");
    EXPECT_EQ(folder / "x.csv", outcomeOf(job(1, OnExists::Replace)).path);
    EXPECT_NE("old", contentsOf(folder / "x.csv"));
    EXPECT_EQ("x.csv", folder.names());
}

TEST_F(ExporterTest, LeavesNothingBehindWhenItIsCancelled) {
    auto outcome = std::optional<ExportOutcome>{};
    exporter.start(job(300'000), [&](ExportOutcome const& result) { outcome = result; });
    EXPECT_TRUE(exporter.isRunning());
    exporter.cancel();
    ASSERT_TRUE(queue.runOne());
    EXPECT_EQ(ExportState::Cancelled, outcome->state);
    EXPECT_FALSE(exporter.isRunning());
    EXPECT_EQ("", folder.names());
}

TEST_F(ExporterTest, CountsThePiecesThatItHasWritten) {
    auto begun = std::promise<void>{};
    auto released = std::promise<void>{};
    auto hasGoneOn = std::atomic<bool>{false};
    auto writer = std::make_unique<PausedWriter>(begun, released.get_future().share(), hasGoneOn);
    EXPECT_EQ(0U, exporter.pieces());
    exporter.start({OutputFile{folder.path(), "x.txt"}, std::move(writer), OnExists::Rename},
                   [](ExportOutcome const& result) { EXPECT_EQ(ExportState::Done, result.state); });
    begun.get_future().wait();
    EXPECT_EQ(1U, exporter.pieces());
    released.set_value();
    ASSERT_TRUE(queue.runOne());
    EXPECT_EQ(0U, exporter.pieces());
}

TEST_F(ExporterTest, EndsAWriterBetweenTwoPiecesWhenItIsCancelled) {
    auto begun = std::promise<void>{};
    auto cancelled = std::promise<void>{};
    auto hasGoneOn = std::atomic<bool>{false};
    auto writer = std::make_unique<PausedWriter>(begun, cancelled.get_future().share(), hasGoneOn);
    exporter.start({OutputFile{folder.path(), "x.txt"}, std::move(writer), OnExists::Rename},
                   [](ExportOutcome const& result) { EXPECT_EQ(ExportState::Cancelled, result.state); });
    begun.get_future().wait();
    exporter.cancel();
    cancelled.set_value();
    ASSERT_TRUE(queue.runOne());
    EXPECT_FALSE(hasGoneOn);
    EXPECT_EQ("", folder.names());
}

TEST_F(ExporterTest, LeavesNothingBehindWhenTheDiskIsFull) {
    auto const limit = FileSizeLimit{10'000};
    auto const outcome = outcomeOf(job(100'000));
    EXPECT_EQ(ExportState::Failed, outcome.state);
    EXPECT_EQ("cannot write x.csv: File too large", outcome.detail);
    EXPECT_EQ("", folder.names());
}

TEST_F(ExporterTest, FailsWhenTheFolderGoesInTheMiddle) {
    auto started = job(1);
    std::filesystem::remove_all(folder.path());
    auto const outcome = outcomeOf(std::move(started));
    EXPECT_EQ(ExportState::Failed, outcome.state);
    EXPECT_EQ("cannot write " + folder / "x.csv" + ": No such file or directory", outcome.detail);
}

TEST_F(ExporterTest, CanBeDroppedWhileItWrites) {
    auto called = false;
    {
        auto dropped = Exporter{[this](std::function<void()> task) { queue.post(std::move(task)); }};
        dropped.start(job(300'000), [&](ExportOutcome const&) { called = true; });
    }
    ASSERT_TRUE(queue.runOne());
    EXPECT_FALSE(called);
    EXPECT_EQ("", folder.names());
}

TEST_F(ExporterTest, CanStartAgainFromWithinItsLastWord) {
    auto done = 0;
    exporter.start(job(1), [&](ExportOutcome const&) {
        ++done;
        exporter.start(job(1), [&](ExportOutcome const&) { ++done; });
    });
    ASSERT_TRUE(queue.runOne());
    ASSERT_TRUE(queue.runOne());
    EXPECT_EQ(2, done);
}

} // namespace workbench
