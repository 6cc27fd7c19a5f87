#pragma once

#include "Ports/Json.h"

namespace fcp::bench {

class PageSide;

// One of many that were measured together.
struct Trip {
    double microseconds = 0;
    double processor = 0; // microseconds that the UI process worked
    double p99 = 0; // milliseconds, the slowest but one in a hundred
};

// Requests with an answer, `inFlight` of them at a time. `comments` of them go along in "comments".
struct Trips {
    Json message;
    Json expected;
    int count = 0;
    int inFlight = 1;
    int comments = 0;

    [[nodiscard]] Trip run(PageSide& side) const;
};

} // namespace fcp::bench
