// How long 20,000 comments take in one message from the page into the container's store. The floor is the
// same way to a container that keeps nothing.

#include "benches/Harness/BusSide.h"
#include "benches/Harness/PageSide.h"
#include "benches/Harness/Program.h"
#include "benches/Harness/TemporaryFolder.h"
#include "benches/Harness/Trips.h"

namespace {

using namespace fcp;
using namespace fcp::bench;

constexpr double microsecondsPerMillisecond = 1000;

// The real container with a new store.
class StoreSide {
public:
    explicit StoreSide(std::string const& database)
        : process{"zelvix-container", {"--no-window", "--database", database}, SideProcess::Pipes::Both} {
        while (process.readLine().find("ready in") == std::string::npos) {
        }
    }

private:
    SideProcess process;
};

void measure(Options const& options, Report& report) {
    RoundServer server;
    TemporaryFolder const folder;
    PageSide panel(server, "panel", "measured-panel");
    Trips trips{{{"command", "syncAllComments"}}, true};
    trips.count = 1;
    trips.comments = options.count(20'000, 500);
    Comparison time("syncAllComments with " + std::to_string(trips.comments) +
                        ", from the page into the store",
                    " ms", 0, {Bound::Kind::AtMost, 3});
    alternate<Trip>(options,
                    {[&] {
                         StoreSide const container{folder / "store.sqlite"};
                         return trips.run(panel);
                     },
                     [&] {
                         ContainerSide const container;
                         return trips.run(panel);
                     }},
                    [&](std::vector<Trip> const& us) {
                        time.add(us[0].microseconds / microsecondsPerMillisecond,
                                 us[1].microseconds / microsecondsPerMillisecond);
                    });
    report.print(time);
}

} // namespace

int main(int argc, char** argv) {
    auto const options =
        readOptions(argc, argv, "20,000 comments on their way from the page into the store", 10);
    return runProgram(options, [&options](Report& report) { measure(options, report); });
}
