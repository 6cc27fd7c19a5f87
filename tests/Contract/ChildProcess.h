#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace fcp::test {

// A program that a test starts, and ends with itself at the latest.
class ChildProcess {
public:
    enum class Errors { Dropped, Readable };

    // Found along PATH; its standard output can be read, and its standard error with it if that is wanted.
    explicit ChildProcess(std::vector<std::string> const& command, Errors errors = Errors::Dropped);
    ~ChildProcess();

    ChildProcess(ChildProcess const&) = delete;
    ChildProcess& operator=(ChildProcess const&) = delete;

    // The next line of its standard output without the line feed; empty at the end, and after 20 s of
    // silence.
    [[nodiscard]] std::string readLine();

    // Stops and resumes it.
    void stall() const;
    void resume() const;

    // Ends it at once, and waits for that.
    void kill();

    // Waits for its own end; its exit status.
    [[nodiscard]] int wait();

private:
    pid_t pid = -1;
    int output = -1;
    std::string unread;
};

} // namespace fcp::test
