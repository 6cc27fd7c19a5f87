#include "Workbench/HostEditor/RunningProgram.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace workbench {

namespace {

void change(std::string const& variable) {
    auto const equals = variable.find('=');
    if (equals == std::string::npos)
        unsetenv(variable.c_str());
    else
        setenv(variable.substr(0, equals).c_str(), variable.c_str() + equals + 1, 1);
}

[[noreturn]] void become(std::vector<std::string> const& command,
                         std::vector<std::string> const& environment) {
    for (auto const& variable : environment)
        change(variable);
    std::vector<char*> arguments;
    for (auto const& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments.front(), arguments.data());
    _exit(127);
}

} // namespace

RunningProgram::RunningProgram(std::vector<std::string> const& command,
                               std::vector<std::string> const& environment) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return;
    process = fork();
    if (process == 0) {
        dup2(ends[1], STDOUT_FILENO);
        dup2(ends[1], STDERR_FILENO);
        become(command, environment);
    }
    close(ends[1]);
    pipe = ends[0];
}

RunningProgram::~RunningProgram() {
    if (!status) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
    close(pipe);
}

bool RunningProgram::waitFor(std::string const& text, int milliseconds) {
    auto const deadline = g_get_monotonic_time() + milliseconds * G_GINT64_CONSTANT(1000);
    while (said.find(text) == std::string::npos) {
        auto const left = (deadline - g_get_monotonic_time()) / 1000;
        if (left <= 0 || !readSome(static_cast<int>(left)))
            return false;
    }
    return true;
}

bool RunningProgram::waitForLines(std::string const& text, std::size_t count) {
    constexpr int patience = 30'000;
    while (linesWith(text).size() < count)
        if (!readSome(patience))
            return false;
    return true;
}

std::vector<std::string> RunningProgram::linesWith(std::string const& text) const {
    std::vector<std::string> found;
    std::istringstream stream{said.substr(0, said.rfind('\n') + 1)};
    for (std::string line; std::getline(stream, line);)
        if (line.find(text) != std::string::npos)
            found.push_back(line);
    return found;
}

void RunningProgram::signal(int number) const {
    kill(process, number);
}

std::optional<int> RunningProgram::waitForEnd(int milliseconds) {
    auto const deadline = g_get_monotonic_time() + milliseconds * G_GINT64_CONSTANT(1000);
    while (!status && g_get_monotonic_time() < deadline) {
        int raw = 0;
        if (waitpid(process, &raw, WNOHANG) == process)
            status = WIFSIGNALED(raw) ? 128 + WTERMSIG(raw) : WEXITSTATUS(raw);
        else
            readSome(20);
    }
    while (readSome(0)) {
    }
    return status;
}

bool RunningProgram::readSome(int milliseconds) {
    pollfd ready{.fd = pipe, .events = POLLIN, .revents = 0};
    if (poll(&ready, 1, milliseconds) <= 0)
        return false;
    std::array<char, 4096> piece{};
    auto const count = read(pipe, piece.data(), piece.size());
    if (count <= 0) {
        // All ends are closed: the process has ended or is about to.
        if (milliseconds > 0)
            usleep(1000);
        return false;
    }
    said.append(piece.data(), static_cast<std::size_t>(count));
    return true;
}

} // namespace workbench
