// How long 1 MB of comments takes from the page to the container. The floor is a bare engine's delivery, with
// the message as text, and a bare bus's transfer of the same comments, added up; both with their answers.
// What they take together in one bare process is printed beside it.

#include "benches/Harness/BusSide.h"
#include "benches/Harness/PageSide.h"
#include "benches/Harness/Program.h"
#include "benches/Harness/Trips.h"
#include "benches/Sides/Comments.h"

namespace {

using namespace fcp;
using namespace fcp::bench;

constexpr double microsecondsPerMillisecond = 1000;

void measure(Options const& options, Report& report) {
    RoundServer server;
    ContainerSide const container;
    PageSide panel(server, "panel", "measured-panel");
    PageSide engine(server, "engine", "measured-engine");
    BusSide bus;
    PageSide bridge(server, "bridge", "measured-bridge");
    Trips trips{{{"command", "syncAllComments"}}, true};
    trips.count = options.count(5, 2);
    trips.comments = commentsOfOneMegabyte;
    Comparison time("syncAllComments with 1 MB", " ms", 2, {Bound::Kind::AtMost, 1.10});
    Beside floors("floor of the engine", " ms", 2, "of the bus");
    Beside together("ours", " ms", 2, "both bare in one process");
    Beside processor("UI process", " ms", 2, "bare");
    alternate<Trip>(options,
                    {[&] { return trips.run(panel); }, [&] { return trips.run(engine); },
                     [&] { return bus.oneMegabyteCommands(trips.count); }, [&] { return trips.run(bridge); }},
                    [&](std::vector<Trip> const& us) {
                        auto const ms = [&us](std::size_t i, double Trip::* figure) {
                            return us[i].*figure / microsecondsPerMillisecond;
                        };
                        auto const [whole, work] = std::pair(&Trip::microseconds, &Trip::processor);
                        time.add(ms(0, whole), ms(1, whole) + ms(2, whole));
                        floors.add(ms(1, whole), ms(2, whole));
                        together.add(ms(0, whole), ms(3, whole));
                        processor.add(ms(0, work), ms(3, work));
                    });
    time.addRemark(floors.text());
    time.addRemark(together.text());
    time.addRemark(processor.text());
    report.print(time);
}

} // namespace

int main(int argc, char** argv) {
    auto const options = readOptions(argc, argv, "1 MB of comments on their way to the container", 25);
    return runProgram(options, [&options](Report& report) { measure(options, report); });
}
