#include "Workbench/HostEditor/Journal.h"

#include <cstdio>

namespace workbench {

namespace {

long long millisecondsSince(std::chrono::steady_clock::time_point start) {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now() - start).count();
}

} // namespace

void Journal::say(std::string const& line) const {
    std::printf("%6lld ms  %s\n", millisecondsSince(start), line.c_str());
    std::fflush(stdout);
}

void Journal::warn(std::string const& line) const {
    std::fprintf(stderr, "zelvix-workbench: %s\n", line.c_str());
    std::fflush(stderr);
}

std::string Stopwatch::text() const {
    return std::to_string(millisecondsSince(start)) + " ms";
}

} // namespace workbench
