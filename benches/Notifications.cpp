// How fast the host's notifications become events in the page. That none is lost and all are in order is the
// page's own concern: it ends a round with an error otherwise.

#include "benches/Harness/PageSide.h"
#include "benches/Harness/Program.h"
#include "benches/Harness/Trips.h"

namespace {

using namespace fcp;
using namespace fcp::bench;

Trip runBurst(PageSide& side, int count) {
    auto const result = side.run({{"kind", "burst"}, {"count", count}, {"frameSeconds", 1001.0 / 30'000}});
    auto const perEvent = 1000.0 / count;
    return {result["milliseconds"].get<double>() * perEvent, result["processor"].get<double>() * perEvent, 0};
}

void measure(Options const& options, Report& report, std::string const& from,
             std::vector<std::string> arguments) {
    auto const count = options.count(20'000, 500);
    arguments.insert(arguments.end(), {"--burst", std::to_string(count)});
    RoundServer server;
    PageSide panel(server, "panel", "measured-panel", arguments);
    PageSide engine(server, "engine", "measured-engine", arguments);
    Comparison rate(std::to_string(count) + " notifications from " + from, "/s", 0,
                    {Bound::Kind::AtLeast, 0.95});
    Beside processor("UI process", " us", 1);
    alternate<Trip>(options,
                    {[&] { return runBurst(panel, count); }, [&] { return runBurst(engine, count); }},
                    [&](std::vector<Trip> const& events) {
                        rate.add(1e6 / events[0].microseconds, 1e6 / events[1].microseconds);
                        processor.add(events[0].processor, events[1].processor);
                    });
    rate.addRemark("none lost, in order");
    rate.addRemark(processor.text());
    report.print(rate);
}

} // namespace

int main(int argc, char** argv) {
    auto const options = readOptions(argc, argv, "host notifications that become events in the page", 11);
    return runProgram(options, [&options](Report& report) {
        measure(options, report, "the main thread", {});
        measure(options, report, "another thread", {"--from-thread"});
    });
}
