#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace workbench {

// A program that a test runs from outside. It hears both of its outputs as they come.
class RunningProgram final {
public:
    // `environment` holds "NAME=value", or "NAME" to take a variable away.
    RunningProgram(std::vector<std::string> const& command, std::vector<std::string> const& environment = {});
    ~RunningProgram(); // ends it, whatever its state
    RunningProgram(RunningProgram const&) = delete;
    RunningProgram& operator=(RunningProgram const&) = delete;

    // Reads until the text has been said, on either output; false when it ends before, or says nothing of the
    // kind within the time.
    bool waitFor(std::string const& text, int milliseconds = 30'000);

    // Reads until `count` lines hold the text.
    bool waitForLines(std::string const& text, std::size_t count);

    // Everything that it has said so far.
    [[nodiscard]] std::string const& output() const { return said; }

    [[nodiscard]] std::vector<std::string> linesWith(std::string const& text) const;

    void signal(int number) const;

    [[nodiscard]] pid_t id() const { return process; }

    // Its exit status, 128 and the signal's number after a signal; none when it does not end within the time.
    std::optional<int> waitForEnd(int milliseconds = 30'000);

private:
    bool readSome(int milliseconds);

    pid_t process = -1;
    int pipe = -1;
    std::string said;
    std::optional<int> status;
};

} // namespace workbench
