#include "benches/Harness/ProcessFigures.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <system_error>

namespace fcp::bench {

namespace {

constexpr char const* webProcessName = "WebKitWebProces"; // as the kernel cuts it
constexpr double kibibytesPerMebibyte = 1024;

struct Process {
    std::string name;
    pid_t parent = 0;
};

Process readProcess(std::filesystem::path const& folder) {
    Process process;
    std::string word;
    std::ifstream status(folder / "status");
    while (status >> word && word != "PPid:")
        if (word == "Name:")
            status >> process.name;
    status >> process.parent;
    return process;
}

std::map<pid_t, Process> allProcesses() {
    std::map<pid_t, Process> processes;
    for (auto const& entry : std::filesystem::directory_iterator("/proc")) {
        auto const name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") == std::string::npos)
            processes[std::stoi(name)] = readProcess(entry.path());
    }
    return processes;
}

bool descends(std::map<pid_t, Process> const& processes, pid_t process, pid_t ancestor) {
    while (process > 1 && process != ancestor) {
        auto const found = processes.find(process);
        process = found == processes.end() ? 0 : found->second.parent;
    }
    return process == ancestor;
}

} // namespace

std::vector<pid_t> webProcesses(pid_t ancestor) {
    auto const processes = allProcesses();
    std::vector<pid_t> found;
    for (auto const& [pid, process] : processes)
        if (process.name == webProcessName && descends(processes, pid, ancestor))
            found.push_back(pid);
    return found;
}

double proportionalSetSize(pid_t process) {
    std::ifstream rollup("/proc/" + std::to_string(process) + "/smaps_rollup");
    std::string word;
    while (rollup >> word && word != "Pss:") {
    }
    double kibibytes = 0;
    if (!(rollup >> kibibytes))
        throw std::runtime_error("the memory of process " + std::to_string(process) + " cannot be read");
    return kibibytes / kibibytesPerMebibyte;
}

double processorTime(pid_t process) {
    double nanoseconds = 0;
    std::error_code gone;
    for (auto const& thread :
         std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task", gone)) {
        double ofThread = 0;
        std::ifstream(thread.path() / "schedstat") >> ofThread;
        nanoseconds += ofThread;
    }
    return nanoseconds / 1e6;
}

} // namespace fcp::bench
