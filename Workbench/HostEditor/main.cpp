#include "Workbench/HostEditor/Options.h"
#include "Workbench/HostEditor/Program.h"

#include <cstdio>

int main(int count, char** arguments) {
    using workbench::Request;
    constexpr int misused = 2;
    auto const line = workbench::parseCommandLine({arguments + 1, arguments + count});
    switch (line.request) {
    case Request::ShowHelp:
        std::fputs(workbench::helpText().c_str(), stdout);
        return 0;
    case Request::ShowVersion:
        std::puts("zelvix-workbench " ZELVIX_VERSION);
        return 0;
    case Request::Refuse:
        std::fprintf(stderr, "zelvix-workbench: %s; --help shows what it takes\n", line.problem.c_str());
        return misused;
    case Request::Run:
        break;
    }
    return workbench::runWorkbench(line.options);
}
