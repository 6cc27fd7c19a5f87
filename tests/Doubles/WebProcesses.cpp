#include "Doubles/WebProcesses.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>

namespace fcp::test {

namespace {

struct Process {
    std::string name;
    pid_t parent = 0;
    char state = 'R';
};

std::optional<Process> readProcess(std::filesystem::path const& folder) {
    std::ifstream file(folder / "stat");
    std::string const text{std::istreambuf_iterator<char>(file), {}};
    auto const open = text.find('(');
    auto const close = text.rfind(')');
    if (open == std::string::npos || close == std::string::npos)
        return std::nullopt;
    Process process{text.substr(open + 1, close - open - 1)};
    std::istringstream(text.substr(close + 1)) >> process.state >> process.parent;
    return process;
}

std::map<pid_t, Process> allProcesses() {
    std::map<pid_t, Process> found;
    for (auto const& entry : std::filesystem::directory_iterator("/proc")) {
        auto const name = entry.path().filename().string();
        pid_t pid = 0;
        if (std::from_chars(name.data(), name.data() + name.size(), pid).ptr != name.data() + name.size())
            continue;
        if (auto process = readProcess(entry.path()))
            found.emplace(pid, std::move(*process));
    }
    return found;
}

bool descendsFromUs(std::map<pid_t, Process> const& processes, pid_t pid) {
    for (auto at = processes.find(pid); at != processes.end(); at = processes.find(at->second.parent)) {
        if (at->first == getpid())
            return true;
    }
    return false;
}

} // namespace

std::vector<pid_t> engineProcesses(std::string const& name) {
    std::vector<pid_t> found;
    auto const processes = allProcesses();
    for (auto const& [pid, process] : processes) {
        if (process.name == name && process.state != 'Z' && descendsFromUs(processes, pid))
            found.push_back(pid);
    }
    return found;
}

std::size_t killEngineProcesses(std::string const& name) {
    auto const found = engineProcesses(name);
    std::ranges::for_each(found, [](pid_t pid) { kill(pid, SIGKILL); });
    return found.size();
}

} // namespace fcp::test
