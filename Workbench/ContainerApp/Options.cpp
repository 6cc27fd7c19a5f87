#include "Workbench/ContainerApp/Options.h"

#include <glib.h>

namespace workbench {

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
        } else if (*argument == "--database" && argument + 1 != arguments.end() && !(argument + 1)->empty()) {
            options.database = *++argument;
        } else {
            problem = *argument == "--database" ? "--database needs a file" : "unknown argument " + *argument;
            return {};
        }
    }
    return options;
}

std::string helpText() {
    return "Usage: zelvix-container [OPTION...]\n"
           "Answers the review panel's commands over the session bus and keeps the review comments.\n"
           "\n"
           "  --database FILE  keep the comments in FILE\n"
           "                   (else in zelvix/container.sqlite in the user's data folder)\n"
           "  --no-window      show nothing and need no display; no folder can be chosen then\n"
           "  --verbose        write one line for each thing done\n"
           "  --version        write the version and end\n"
           "  --help           write this and end\n"
           "\n"
           "Exit codes: 0 ended as asked, 1 internal failure, 2 wrong usage, 3 another one is running,\n"
           "4 no session bus, 5 the database cannot be used.\n";
}

std::string defaultDatabase() {
    return std::string{g_get_user_data_dir()} + "/zelvix/container.sqlite";
}

} // namespace workbench
