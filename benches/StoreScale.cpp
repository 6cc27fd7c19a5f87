// What the container's store takes among 100,000 comments: to write all of them anew, and to find the marker
// at a time. The floor is a bare database with the same columns and settings that does as little as it can.

#include "Workbench/ContainerApp/CommentReader.h"
#include "Workbench/ContainerApp/Store.h"
#include "benches/Harness/Program.h"
#include "benches/Harness/TemporaryFolder.h"

#include <chrono>
#include <cmath>
#include <malloc.h>

namespace {

using namespace fcp::bench;
using workbench::CommentDraft;

constexpr double millisecondsPerSecond = 1000;
constexpr double microsecondsPerSecond = 1'000'000;

constexpr double secondsBetween = 0.5;

// Every tenth is a range that reaches over others.
std::vector<CommentDraft> makeDrafts(int count, int round) {
    std::vector<CommentDraft> drafts;
    drafts.reserve(static_cast<std::size_t>(count));
    for (int number = 0; number < count; ++number) {
        auto const raw = workbench::Json{{"id", "comment-" + std::to_string(number)},
                                         {"seconds", secondsBetween * number},
                                         {"duration", number % 10 == 0 ? 20 : 0},
                                         {"author", "A. Reviewer"},
                                         {"text", "The grade drifts here, round " + std::to_string(round)}};
        drafts.push_back(workbench::readComment(raw).value());
    }
    return drafts;
}

double secondsFor(std::function<void()> const& task) {
    auto const begun = std::chrono::steady_clock::now();
    task();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
}

class Ours {
public:
    explicit Ours(std::string const& file)
        : store{file} {
        store.comments.setObserver([](auto const&...) {});
    }

    double sync(std::vector<CommentDraft> drafts) {
        return secondsFor([&] { std::ignore = store.comments.syncAll(std::move(drafts)); });
    }

    double find(double seconds) {
        return secondsFor([&] { std::ignore = store.markers.at(seconds, 0.5); });
    }

private:
    workbench::Store store;
};

class Bare {
public:
    explicit Bare(std::string const& file)
        : database{file} {
        database.execute(
            "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; PRAGMA wal_autocheckpoint = 10000;"
            "CREATE TABLE comments(id TEXT PRIMARY KEY, author TEXT, body TEXT, start_s REAL, "
            "duration_s REAL, raw TEXT) WITHOUT ROWID;"
            "CREATE INDEX by_time ON comments(start_s)");
    }

    double sync(std::vector<CommentDraft> const& drafts) {
        workbench::Statement write{database,
                                   "INSERT OR REPLACE INTO comments VALUES(?1, ?2, ?3, ?4, ?5, ?6)"};
        return secondsFor([&] {
            workbench::Transaction transaction{database};
            for (auto const& [comment, hasStart, sequence, created, updated, raw, hasReplies, replies] :
                 drafts)
                write.run(comment.id, comment.author, comment.text, comment.start, comment.duration, raw);
            transaction.commit();
        });
    }

    double find(double seconds) {
        return secondsFor([&] {
            auto rows = read().query(seconds - 0.5, seconds + 0.5);
            while (rows.next())
                std::ignore = rows.text(2);
        });
    }

private:
    workbench::Statement& read() {
        if (!reading)
            reading = std::make_unique<workbench::Statement>(
                database, "SELECT id, author, body FROM comments WHERE start_s BETWEEN ?1 AND ?2");
        return *reading;
    }

    workbench::Database database;
    std::unique_ptr<workbench::Statement> reading;
};

// Bytes that are in use.
double memory() {
    auto const figures = ::mallinfo2();
    return static_cast<double>(figures.uordblks + figures.hblkhd);
}

std::string kilobytes(double bytes) {
    return std::to_string(std::llround(bytes / 1000)) + " kB";
}

// Every lookup at another time, as a playhead that jumps.
template <typename Side>
double findMany(Side& side, int lookups, int count) {
    double sum = 0;
    for (int number = 0; number < lookups; ++number)
        sum += side.find(secondsBetween * count * number / lookups);
    return sum / lookups * microsecondsPerSecond;
}

void measure(Options const& options, Report& report) {
    auto const count = options.count(100'000, 2000);
    TemporaryFolder const folder;
    Ours ours{folder / "ours.sqlite"};
    Bare bare{folder / "bare.sqlite"};
    Comparison sync("all of " + std::to_string(count) + " comments into the store", " ms", 0,
                    {Bound::Kind::AtMost, 4});
    Comparison find("marker lookup among " + std::to_string(count), " us", 1, {Bound::Kind::AtMost, 16});
    double before = 0;
    for (int round = 0; round <= options.rounds; ++round) {
        if (round == 1) // what is made once is there now
            before = memory();
        auto const drafts = makeDrafts(count, round);
        auto const took = ours.sync(drafts) * millisecondsPerSecond;
        auto const bareTook = bare.sync(drafts) * millisecondsPerSecond;
        auto const found = findMany(ours, options.count(2000, 50), count);
        auto const bareFound = findMany(bare, options.count(2000, 50), count);
        if (round == 0)
            continue;
        sync.add(took, bareTook);
        find.add(found, bareFound);
    }
    sync.addRemark("asked for are 5000 ms; memory grew by " + kilobytes(memory() - before) + " over " +
                   std::to_string(options.rounds) + " rounds");
    find.addRemark("asked for are 1000 us");
    report.print(sync);
    report.print(find);
}

} // namespace

int main(int argc, char** argv) {
    auto const options = readOptions(argc, argv, "the container's store among 100,000 comments", 5);
    return runProgram(options, [&options](Report& report) { measure(options, report); });
}
