#include "Workbench/ContainerApp/ContainerProcess.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace workbench {

namespace {

void redirect(std::string const& file, int descriptor) {
    auto const opened = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::dup2(opened, descriptor);
    ::close(opened);
}

void refuse(char const* what) {
    std::fprintf(stderr, "the tests need to %s: %s\n", what, std::strerror(errno));
    ::_exit(126);
}

// In a name space of its own, which goes with the process. It takes the right to mount, which a user name
// space gives to everybody where the system allows one.
void mount(Disk const& disk) {
    auto const spaces = CLONE_NEWNS | (::geteuid() == 0 ? 0 : CLONE_NEWUSER);
    if (::unshare(spaces) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        refuse("make a name space for mounts");
    auto const* const folder = disk.folder.c_str();
    auto const size = "size=" + std::to_string(disk.size);
    auto const isMounted =
        disk.kind == Disk::Kind::Small
            ? ::mount("none", folder, "tmpfs", 0, size.c_str()) == 0
            : ::mount(folder, folder, nullptr, MS_BIND, nullptr) == 0 &&
                  ::mount(nullptr, folder, nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) == 0;
    if (!isMounted)
        refuse("mount a disk");
}

// In the child.
void apply(ProcessLimits const& limits) {
    if (limits.disk)
        mount(*limits.disk);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (limits.obeysPermissions)
        for (auto const capability : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH, CAP_FOWNER})
            ::prctl(PR_CAPBSET_DROP, capability);
    if (!limits.fileSize)
        return;
    auto const limit = rlimit{*limits.fileSize, *limits.fileSize};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    ::signal(SIGXFSZ, SIG_IGN);
}

} // namespace

bool waitUntil(std::function<bool()> const& condition, std::chrono::seconds patience) {
    auto const deadline = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        auto const pause = timespec{0, 1'000'000};
        ::nanosleep(&pause, nullptr);
    }
    return true;
}

ContainerProcess::ContainerProcess(std::vector<std::string> arguments, ProcessLimits const& limits) {
    auto program = std::string{CONTAINER_PROGRAM};
    auto pointers = std::vector<char*>{program.data()};
    for (auto& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    auto const out = folder / "out";
    auto const err = folder / "err";
    if (auto const child = ::fork(); child != 0) {
        process = child;
        return;
    }
    redirect(out, STDOUT_FILENO);
    redirect(err, STDERR_FILENO);
    apply(limits);
    ::execv(pointers[0], pointers.data());
    ::_exit(127);
}

ContainerProcess::~ContainerProcess() {
    if (process == 0)
        return;
    signal(SIGKILL);
    ::waitpid(process, nullptr, 0);
}

bool ContainerProcess::isReady() {
    return waitUntil([this] { return output().find("ready in") != std::string::npos; });
}

void ContainerProcess::signal(int number) const {
    ::kill(process, number);
}

int ContainerProcess::wait(std::chrono::seconds patience) {
    auto status = 0;
    if (!waitUntil([&] { return ::waitpid(process, &status, WNOHANG) == process; }, patience))
        return -1000;
    process = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace workbench
