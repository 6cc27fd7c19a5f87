#pragma once

#include "Platform/Gtk/GRef.h"

#include <string>
#include <sys/types.h>
#include <vector>

namespace fcp::bench {

// One of the programs that are measured, as a process of its own; it stands beside the measuring program.
// Ended when this goes. Everything throws std::runtime_error when it fails.
class SideProcess {
public:
    // Both ends of a conversation in lines, or none: then it writes where we write.
    enum class Pipes { None, Both };

    SideProcess(std::string const& program, std::vector<std::string> const& arguments, Pipes pipes);
    ~SideProcess();

    SideProcess(SideProcess const&) = delete;
    SideProcess& operator=(SideProcess const&) = delete;

    [[nodiscard]] pid_t pid() const;
    [[nodiscard]] bool isRunning() const;

    // Whole lines over the pipes. Waiting for one runs the default main context.
    void writeLine(std::string const& line);
    [[nodiscard]] std::string readLine();

private:
    std::string const name;
    GRef<GSubprocess> process;
    GRef<GDataInputStream> output;
};

} // namespace fcp::bench
