#pragma once

#include <string>
#include <vector>

namespace workbench {

// What the command line asks for.
struct Options {
    std::vector<std::string> files;
    std::string panelModule; // empty: look for it where it is built or installed
    std::string recordTo; // empty: nothing is written down
    std::string replayFrom; // empty: nothing is played back
    bool production = false; // leave the marker files alone
    bool servesPage = true; // else whatever answers on the port is loaded
    bool startsContainer = true; // else whoever owns the container's bus name answers
    bool observerThread = false; // notify the panel from a thread of its own
};

enum class Request { Run, ShowHelp, ShowVersion, Refuse };

struct CommandLine {
    Request request = Request::Run;
    Options options;
    std::string problem; // of Refuse: one line
};

// `arguments` without the program's name.
[[nodiscard]] CommandLine parseCommandLine(std::vector<std::string> const& arguments);

[[nodiscard]] std::string helpText();

} // namespace workbench
