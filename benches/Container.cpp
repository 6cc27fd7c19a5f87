// How long a short container command takes, from page to page. The floor is a bare engine's round trip and a
// bare bus's one, added up. What they take together in one bare process is
// printed beside it.

#include "benches/Harness/BusSide.h"
#include "benches/Harness/PageSide.h"
#include "benches/Harness/Program.h"
#include "benches/Harness/Trips.h"

namespace {

using namespace fcp;
using namespace fcp::bench;

void measure(Options const& options, Report& report) {
    RoundServer server;
    ContainerSide const container;
    PageSide panel(server, "panel", "measured-panel");
    PageSide engine(server, "engine", "measured-engine");
    BusSide bus;
    PageSide bridge(server, "bridge", "measured-bridge");
    Trips trips{{{"command", "deleteComment"}, {"commentId", "comment-4711"}}, true};
    trips.count = options.count(200, 50);
    Comparison time("container round trip", " us", 1, {Bound::Kind::AtMost, 1.10});
    Beside floors("floor of the engine", " us", 1, "of the bus");
    Beside together("ours", " us", 1, "both bare in one process");
    Beside processor("UI process", " us", 1, "bare");
    alternate<Trip>(options,
                    {[&] { return trips.run(panel); }, [&] { return trips.run(engine); },
                     [&] { return bus.shortCommands(trips.count); }, [&] { return trips.run(bridge); }},
                    [&](std::vector<Trip> const& trip) {
                        time.add(trip[0].microseconds, trip[1].microseconds + trip[2].microseconds);
                        floors.add(trip[1].microseconds, trip[2].microseconds);
                        together.add(trip[0].microseconds, trip[3].microseconds);
                        processor.add(trip[0].processor, trip[3].processor);
                    });
    time.addRemark(floors.text());
    time.addRemark(together.text());
    time.addRemark(processor.text());
    report.print(time);
}

} // namespace

int main(int argc, char** argv) {
    auto const options = readOptions(argc, argv, "the round trip of a container command", 80);
    return runProgram(options, [&options](Report& report) { measure(options, report); });
}
