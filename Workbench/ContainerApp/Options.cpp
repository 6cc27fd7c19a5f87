#include "Workbench/ContainerApp/Options.h"

#include <glib.h>

#include <array>
#include <memory>
#include <utility>

namespace workbench {

namespace {

struct ValueOption {
    std::string_view name;
    std::string_view value; // what it needs
    std::string ContainerOptions::* place;
};

constexpr std::array valueOptions{ValueOption{"--database", "a file", &ContainerOptions::database},
                                  ValueOption{"--import", "a file", &ContainerOptions::importFile},
                                  ValueOption{"--sequence", "a sequence's key", &ContainerOptions::sequence}};

ValueOption const* findValueOption(std::string_view name) {
    for (auto const& option : valueOptions)
        if (option.name == name)
            return &option;
    return nullptr;
}

// Another process may be the one that reads it, in another folder.
std::string fullPath(std::string const& file) {
    auto const path =
        std::unique_ptr<char, decltype(&g_free)>{g_canonicalize_filename(file.c_str(), nullptr), g_free};
    return path.get();
}

} // namespace

std::optional<ContainerOptions> readOptions(std::vector<std::string> const& arguments, std::string& problem) {
    auto options = ContainerOptions{};
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        if (*argument == "--help" || *argument == "-h") {
            options.action = ContainerOptions::Action::Help;
        } else if (*argument == "--version") {
            options.action = ContainerOptions::Action::Version;
        } else if (*argument == "--no-window") {
            options.window = false;
        } else if (*argument == "--verbose") {
            options.verbose = true;
        } else if (auto const* const option = findValueOption(*argument)) {
            ++argument;
            if (argument == arguments.end() || argument->empty()) {
                problem = std::string{option->name} + " needs " + std::string{option->value};
                return {};
            }
            options.*option->place = *argument;
        } else {
            problem = "unknown argument " + *argument;
            return {};
        }
    }
    if (options.importFile.empty() && !options.sequence.empty()) {
        problem = "--sequence belongs to --import";
        return {};
    }
    if (!options.importFile.empty())
        options.importFile = fullPath(options.importFile);
    return options;
}

std::string helpText() {
    return "Usage: zelvix-container [OPTION...]\n"
           "Answers the review panel's commands over the session bus and keeps the review comments.\n"
           "\n"
           "  --database FILE  keep the comments in FILE\n"
           "                   (else in zelvix/container.sqlite in the user's data folder)\n"
           "  --import FILE    read the comments in FILE, comma-separated values or guides of Kdenlive, and "
           "end;\n"
           "                   one that is running does it for this one, in its own database\n"
           "  --sequence KEY   import into this sequence, else into the one that is open in the editor\n"
           "  --no-window      show nothing and need no display; no folder can be chosen then\n"
           "  --verbose        write one line for each thing done\n"
           "  --version        write the version and end\n"
           "  --help           write this and end\n"
           "\n"
           "Exit codes: 0 ended as asked, 1 internal failure, 2 wrong usage, 3 another one is running,\n"
           "4 no session bus, 5 the database cannot be used, 6 the file was not imported.\n";
}

std::string defaultDatabase() {
    return std::string{g_get_user_data_dir()} + "/zelvix/container.sqlite";
}

} // namespace workbench
