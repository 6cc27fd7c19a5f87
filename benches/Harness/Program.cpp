#include "benches/Harness/Program.h"

#include <cstdio>
#include <exception>

namespace fcp::bench {

void Report::print(Comparison const& comparison) {
    std::printf("%s\n", comparison.line().c_str());
    std::fflush(stdout);
    within = within && comparison.isWithinBound();
}

int runProgram(Options const& options, std::function<void(Report&)> const& measure) {
    Report report;
    try {
        measure(report);
    } catch (std::exception const& failure) {
        std::fprintf(stderr, "The measuring failed: %s\n", failure.what());
        return 1;
    }
    return options.check && !report.isWithinBounds() ? 1 : 0;
}

} // namespace fcp::bench
