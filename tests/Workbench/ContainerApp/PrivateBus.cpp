#include "Workbench/ContainerApp/PrivateBus.h"

#include "Workbench/ContainerApp/ContainerProcess.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace workbench {

namespace {

constexpr char const* variable = "DBUS_SESSION_BUS_ADDRESS";

bool isListening(std::string const& socketFile) {
    auto const descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    auto address = sockaddr_un{};
    address.sun_family = AF_UNIX;
    socketFile.copy(address.sun_path, sizeof address.sun_path - 1);
    auto const* any = reinterpret_cast<sockaddr const*>(&address);
    auto const connected = ::connect(descriptor, any, sizeof address) == 0;
    ::close(descriptor);
    return connected;
}

} // namespace

PrivateBus::PrivateBus()
    : before{std::getenv(variable) ? std::getenv(variable) : ""} {
    ::setenv(variable, ("unix:path=" + folder / "bus").c_str(), 1);
    start();
}

PrivateBus::~PrivateBus() {
    kill();
    ::setenv(variable, before.c_str(), 1);
}

void PrivateBus::start() {
    ::unlink((folder / "bus").c_str());
    auto const address = "--address=unix:path=" + folder / "bus";
    process = ::fork();
    if (process == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::execlp("dbus-daemon", "dbus-daemon", "--config-file=" SESSION_BUS_CONFIGURATION, "--nofork",
                 "--nopidfile", address.c_str(), nullptr);
        ::_exit(127);
    }
    EXPECT_TRUE(waitUntil([this] { return isListening(folder / "bus"); }));
}

void PrivateBus::kill() {
    if (process == 0)
        return;
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
    process = 0;
}

} // namespace workbench
