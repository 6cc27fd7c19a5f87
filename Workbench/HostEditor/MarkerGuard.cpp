#include "Workbench/HostEditor/MarkerGuard.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace workbench {

namespace {

[[noreturn]] void keepGuard(char const* path, FileIdentity const& identity, int lifeline) {
    // A terminal sends its signals to the whole group; the guard has to stay until the end.
    for (auto const number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
        signal(number, SIG_IGN);
    prctl(PR_SET_NAME, "zelvix-marker");
    // Whoever reads our output waits for its end.
    close(STDIN_FILENO);
    close(STDOUT_FILENO);
    close(STDERR_FILENO);
    char nothing = 0;
    while (read(lifeline, &nothing, 1) < 0 && errno == EINTR) {
    }
    removeIfSame(path, identity);
    _exit(0);
}

} // namespace

void removeIfSame(char const* path, FileIdentity const& identity) {
    struct stat status{};
    if (lstat(path, &status) == 0 && status.st_dev == identity.device && status.st_ino == identity.node)
        unlink(path);
}

MarkerGuard::MarkerGuard(std::filesystem::path const& file, FileIdentity const& meant)
    : path(file.string())
    , identity(meant) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return;
    guard = fork();
    if (guard == 0) {
        close(ends[1]);
        keepGuard(path.c_str(), identity, ends[0]);
    }
    close(ends[0]);
    lifeline = ends[1];
}

MarkerGuard::~MarkerGuard() {
    if (lifeline >= 0)
        close(lifeline);
    if (guard > 0)
        waitpid(guard, nullptr, 0);
    removeIfSame(path.c_str(), identity);
}

} // namespace workbench
