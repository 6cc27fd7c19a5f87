#include "benches/Sides/SideOptions.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <sys/prctl.h>

namespace fcp::bench {

SideOptions readSideOptions(int argc, char** argv) {
    SideOptions options;
    for (int i = 1; i < argc; ++i) {
        std::string_view const argument = argv[i];
        if (argument == "--from-thread")
            options.burstThread = Burst::Thread::Other;
        else if (argument == "--say-finished")
            options.saysFinished = true;
        else if (argument == "--burst" && i + 1 < argc)
            options.burst = std::atoi(argv[++i]);
        else if (argument == "--timeouts" && i + 1 < argc)
            options.timeouts = std::atoi(argv[++i]);
        else
            options.url = argument;
    }
    if (!options.url.starts_with("http://localhost:")) {
        std::fprintf(stderr, "%s: started by the measuring programs, with the address of their page\n",
                     argv[0]);
        std::exit(2);
    }
    return options;
}

void endWithParent() {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
}

void sayFinished() {
    auto const now = std::chrono::steady_clock::now().time_since_epoch();
    std::printf("finished %lld\n",
                static_cast<long long>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count()));
    std::fflush(stdout);
}

} // namespace fcp::bench
