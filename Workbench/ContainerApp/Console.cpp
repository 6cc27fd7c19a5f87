#include "Workbench/ContainerApp/Console.h"

#include <cstdio>

namespace workbench {

namespace {

void write(std::FILE* stream, std::string const& line) {
    std::fputs((line + "\n").c_str(), stream);
    std::fflush(stream);
}

} // namespace

Console::Console(Detail theDetail)
    : detail{theDetail} {}

void Console::say(std::string const& line) const {
    write(stdout, "zelvix-container: " + line);
}

void Console::tell(std::string const& line) const {
    if (isVerbose())
        say(line);
}

void Console::complain(std::string const& sentence) const {
    write(stderr, "zelvix-container: " + sentence);
}

} // namespace workbench
