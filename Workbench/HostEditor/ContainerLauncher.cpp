#include "Workbench/HostEditor/ContainerLauncher.h"

#include "Workbench/HostEditor/ContainerName.h"
#include "Workbench/HostEditor/Journal.h"

#include <giomm/dbuswatchname.h>
#include <glibmm/main.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace workbench {

namespace {

constexpr unsigned NoPause = 0;
constexpr unsigned FirstPause = 250;
constexpr unsigned LongestPause = 10'000;
constexpr std::int64_t LongLife =
    5'000'000; // microseconds after which a death is no sign of a broken program

std::string describe(int status) {
    if (WIFSIGNALED(status))
        return std::string{"was ended by signal "} + std::to_string(WTERMSIG(status)) + " (" +
               strsignal(WTERMSIG(status)) + ")";
    return "ended with status " + std::to_string(WEXITSTATUS(status));
}

// In the child, before it becomes the other program.
void tieToParent() {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
}

// False after `milliseconds` in which it has not ended.
bool waitForEnd(Glib::Pid process, int milliseconds) {
    constexpr int step = 10;
    for (int waited = 0; waited < milliseconds; waited += step) {
        if (waitpid(process, nullptr, WNOHANG) != 0)
            return true;
        usleep(step * 1000);
    }
    return false;
}

} // namespace

ContainerLauncher::ContainerLauncher(SessionBus& sessionBus, Journal const& toTell,
                                     std::filesystem::path file)
    : bus(sessionBus)
    , journal(toTell)
    , program(std::move(file))
    , pause(NoPause) {
    if (!bus.connection())
        journal.warn("no session bus: no container is started until there is one");
    bus.onConnected(sigc::mem_fun(*this, &ContainerLauncher::watchName));
    bus.signalLost().connect(sigc::mem_fun(*this, &ContainerLauncher::unwatchName));
}

ContainerLauncher::~ContainerLauncher() {
    unwatchName();
    starting.disconnect();
    ending.disconnect();
    stopChild();
}

void ContainerLauncher::watchName() {
    watch = Gio::DBus::watch_name(
        bus.connection(), ContainerName,
        [this](Glib::RefPtr<Gio::DBus::Connection> const&, Glib::ustring const&, Glib::ustring const& owner) {
            nameAppeared(owner);
        },
        [this](Glib::RefPtr<Gio::DBus::Connection> const&, Glib::ustring const&) { nameVanished(); });
}

void ContainerLauncher::unwatchName() {
    if (watch != 0)
        Gio::DBus::unwatch_name(std::exchange(watch, 0));
    isOwned = false;
    starting.disconnect();
}

void ContainerLauncher::nameAppeared(std::string const& owner) {
    isOwned = true;
    starting.disconnect();
    journal.say("container answers on the bus as " + owner +
                (process ? "" : ", not started by this program"));
}

void ContainerLauncher::nameVanished() {
    isOwned = false;
    if (!process)
        startSoon();
}

void ContainerLauncher::startSoon() {
    starting.disconnect();
    if (pause > 0)
        journal.warn("a new container is started in " + std::to_string(pause) + " ms");
    starting = Glib::signal_timeout().connect(
        [this] {
            start();
            return false;
        },
        pause);
    pause = std::clamp(2 * pause, FirstPause, LongestPause);
}

void ContainerLauncher::start() {
    startedAt = g_get_monotonic_time();
    Glib::Pid pid = 0;
    std::vector<std::string> command{program.string()};
    if (!showsWindow)
        command.emplace_back("--no-window");
    try {
        Glib::spawn_async({}, command, Glib::SpawnFlags::DO_NOT_REAP_CHILD, &tieToParent, &pid);
    } catch (Glib::Error const& error) {
        journal.warn(std::string{"cannot start the container: "} + error.what());
        return;
    }
    process = pid;
    ending = Glib::signal_child_watch().connect(
        [this](Glib::Pid ended, int status) { childEnded(ended, status); }, pid);
    journal.say("container started, pid " + std::to_string(pid));
}

void ContainerLauncher::childEnded(Glib::Pid pid, int status) {
    process.reset();
    journal.warn("the container, pid " + std::to_string(pid) + ", " + describe(status));
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
        showsWindow = false;
    if (g_get_monotonic_time() - startedAt > LongLife)
        pause = FirstPause;
    if (!isOwned && watch != 0)
        startSoon();
}

void ContainerLauncher::stopChild() {
    if (!process)
        return;
    constexpr int patience = 2000; // milliseconds
    kill(*process, SIGTERM);
    if (!waitForEnd(*process, patience)) {
        kill(*process, SIGKILL);
        waitpid(*process, nullptr, 0);
    }
    journal.say("container stopped, pid " + std::to_string(*process));
}

} // namespace workbench
