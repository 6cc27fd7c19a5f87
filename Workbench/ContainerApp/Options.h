#pragma once

#include <optional>
#include <string>
#include <vector>

namespace workbench {

// What the process ends with.
enum class ExitCode {
    Done = 0,
    Failed = 1,
    WrongUsage = 2,
    AlreadyRunning = 3,
    NoBus = 4,
    NoDatabase = 5,
    NotImported = 6,
};

// What the command line asks for.
struct ContainerOptions {
    enum class Action { Run, Help, Version };

    Action action = Action::Run;
    std::string database; // empty: the one in the user's data folder
    std::string importFile; // a full path; empty: none
    std::string sequence; // to import into; empty: the active one
    bool window = true;
    bool verbose = false;
};

// `arguments` without the program's name. None for what cannot be understood; `problem` says what.
[[nodiscard]] std::optional<ContainerOptions> readOptions(std::vector<std::string> const& arguments,
                                                          std::string& problem);

[[nodiscard]] std::string helpText();

// The store in the user's data folder.
[[nodiscard]] std::string defaultDatabase();

} // namespace workbench
