#include "benches/Harness/Trips.h"

#include "benches/Harness/PageSide.h"

namespace fcp::bench {

Trip Trips::run(PageSide& side) const {
    auto const result = side.run({{"kind", "trips"},
                                  {"message", message},
                                  {"expected", expected},
                                  {"count", count},
                                  {"inFlight", inFlight},
                                  {"comments", comments}});
    auto const perTrip = 1000.0 / count;
    return {result["milliseconds"].get<double>() * perTrip, result["processor"].get<double>() * perTrip,
            result["p99"].get<double>()};
}

} // namespace fcp::bench
