#pragma once

#include <string>

namespace fcp::bench {

// What every measuring program can be told.
struct Options {
    int rounds = 0; // that count; one more comes first and is thrown away
    bool quick = false; // a few small rounds: whether it works, not how fast
    bool check = false; // a bound that is missed makes the program fail

    // Small numbers where only the working is of interest.
    [[nodiscard]] int count(int full, int small) const { return quick ? small : full; }
};

// Reads the command line. For --help, and for what it does not understand, it prints and ends the process
// (status 0 and 2). `purpose` is one line on what the program measures.
[[nodiscard]] Options readOptions(int argc, char** argv, std::string const& purpose, int defaultRounds);

} // namespace fcp::bench
