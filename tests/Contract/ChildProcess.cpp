#include "Contract/ChildProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <utility>

namespace fcp::test {

namespace {

constexpr int patience = 20'000; // milliseconds

std::vector<char*> argumentsOf(std::vector<std::string>& command) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (auto& argument : command)
        arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    return arguments;
}

} // namespace

ChildProcess::ChildProcess(std::vector<std::string> const& command, Errors errors) {
    int ends[2] = {-1, -1};
    EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    if (errors == Errors::Readable)
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
    else
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    auto words = command;
    EXPECT_EQ(posix_spawnp(&pid, words[0].c_str(), &actions, nullptr, argumentsOf(words).data(), environ), 0)
        << words[0];
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    output = ends[0];
}

ChildProcess::~ChildProcess() {
    kill();
    close(output);
}

std::string ChildProcess::readLine() {
    for (;;) {
        if (auto const end = unread.find('\n'); end != std::string::npos) {
            auto line = unread.substr(0, end);
            unread.erase(0, end + 1);
            return line;
        }
        pollfd ready{output, POLLIN, 0};
        std::array<char, 65536> buffer{};
        auto const size =
            poll(&ready, 1, patience) > 0 ? read(output, buffer.data(), buffer.size()) : ssize_t{0};
        if (size <= 0)
            return std::exchange(unread, {});
        unread.append(buffer.data(), static_cast<std::size_t>(size));
    }
}

void ChildProcess::stall() const {
    ::kill(pid, SIGSTOP);
    int status = 0;
    waitpid(pid, &status, WUNTRACED);
}

void ChildProcess::resume() const {
    ::kill(pid, SIGCONT);
}

void ChildProcess::kill() {
    if (pid < 0)
        return;
    ::kill(pid, SIGKILL);
    (void)wait();
}

int ChildProcess::wait() {
    int status = 0;
    waitpid(std::exchange(pid, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace fcp::test
