// How long a request takes that the panel answers itself.

#include "benches/Harness/PageSide.h"
#include "benches/Harness/Program.h"
#include "benches/Harness/Trips.h"

namespace {

using namespace fcp;
using namespace fcp::bench;

struct Sides {
    PageSide panel;
    PageSide panelWithTimeouts;
    PageSide engine;
};

void measure(Sides& sides, Options const& options, Report& report, std::string const& name,
             Trips const& trips) {
    Comparison rate("getTimeline " + name, "/s", 0, {Bound::Kind::AtLeast, 0.95});
    Comparison crowded("getTimeline " + name + " with 100,000 time-outs pending, against none", " us", 1,
                       {Bound::Kind::AtMost, 1.05});
    Beside p99("p99", " ms", 2);
    Beside processor("UI process", " us", 1);
    auto const run = [&trips](PageSide& side) { return [&] { return trips.run(side); }; };
    alternate<Trip>(options, {run(sides.panel), run(sides.panelWithTimeouts), run(sides.engine)},
                    [&](std::vector<Trip> const& trip) {
                        rate.add(1e6 / trip[0].microseconds, 1e6 / trip[2].microseconds);
                        crowded.add(trip[1].microseconds, trip[0].microseconds);
                        p99.add(trip[0].p99, trip[2].p99);
                        processor.add(trip[0].processor, trip[2].processor);
                    });
    rate.addRemark(p99.text());
    rate.addRemark(processor.text());
    report.print(rate);
    report.print(crowded);
}

} // namespace

int main(int argc, char** argv) {
    auto const options =
        readOptions(argc, argv, "the round trip of a request that the panel answers itself", 80);
    return runProgram(options, [&options](Report& report) {
        RoundServer server;
        Sides sides{{server, "panel", "measured-panel"},
                    {server, "panel-with-timeouts", "measured-panel", {"--timeouts", "100000"}},
                    {server, "engine", "measured-engine"}};
        Trips trips{{{"command", "getTimeline"}}, {{"name", "Interview"}, {"frameRate", 29.97}}};
        trips.count = options.count(300, 50);
        measure(sides, options, report, "one at a time", trips);
        trips.count = options.count(1200, 200);
        trips.inFlight = 64;
        measure(sides, options, report, "64 in flight", trips);
    });
}
