#pragma once

#include <chrono>
#include <string>

namespace workbench {

// What the program tells its terminal: a line on standard output for each thing that it does, with the
// milliseconds since the start, and a line on standard error for each that it could not do. Main thread.
class Journal final {
public:
    Journal()
        : start(std::chrono::steady_clock::now()) {}

    void say(std::string const& line) const;
    void warn(std::string const& line) const;

private:
    std::chrono::steady_clock::time_point start;
};

// Measures one piece of work for the journal.
class Stopwatch final {
public:
    Stopwatch()
        : start(std::chrono::steady_clock::now()) {}

    [[nodiscard]] std::string text() const; // "41 ms"

private:
    std::chrono::steady_clock::time_point start;
};

} // namespace workbench
