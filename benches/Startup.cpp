// How long a fresh process takes to a finished page, and how much memory it and its web processes have
// soon after, when both sides have announced themselves to the page.

#include "benches/Harness/ProcessFigures.h"
#include "benches/Harness/Program.h"
#include "benches/Harness/RoundServer.h"
#include "benches/Harness/SideProcess.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>

namespace {

using namespace fcp;
using namespace fcp::bench;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

struct Start {
    double milliseconds = 0;
    double interfaceMemory = 0; // MiB
    double webMemory = 0;
};

Clock::time_point finishedAt(std::string const& line) {
    std::string const word = "finished ";
    long long nanoseconds = 0;
    if (!line.starts_with(word) ||
        std::from_chars(line.data() + word.size(), line.data() + line.size(), nanoseconds).ec != std::errc())
        throw std::runtime_error("not what a side says when its page has finished: " + line);
    return Clock::time_point(std::chrono::nanoseconds(nanoseconds));
}

bool isThere(pid_t process) {
    return std::filesystem::exists("/proc/" + std::to_string(process));
}

// The next start is to find the machine as this one did.
void waitForEnd(std::vector<pid_t> const& processes) {
    auto const end = Clock::now() + std::chrono::seconds(20);
    while (std::ranges::any_of(processes, isThere)) {
        if (Clock::now() > end)
            throw std::runtime_error("a web process has not ended with its program");
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

Start start(std::string const& program, std::string const& url, std::chrono::milliseconds rest) {
    Start result;
    std::vector<pid_t> pages;
    {
        auto const began = Clock::now();
        SideProcess side(program, {"--say-finished", url}, SideProcess::Pipes::Both);
        result.milliseconds = Milliseconds(finishedAt(side.readLine()) - began).count();
        std::this_thread::sleep_for(rest); // the announcement comes half a second later
        pages = webProcesses(side.pid());
        result.interfaceMemory = proportionalSetSize(side.pid());
        for (auto const page : pages)
            result.webMemory += proportionalSetSize(page);
    }
    waitForEnd(pages);
    return result;
}

void measure(Options const& options, Report& report) {
    RoundServer server;
    std::chrono::milliseconds const rest(options.count(2500, 700));
    Bound const bound{Bound::Kind::AtMost, 1.05};
    Comparison time("process start to page finished", " ms", 0, bound);
    Comparison interfaceMemory("memory of the UI process (PSS)", " MiB", 1, bound);
    Comparison webMemory("memory of the web processes (PSS)", " MiB", 1, bound);
    auto const side = [&](char const* program) {
        return [&server, rest, program] { return start(program, server.startupURL(), rest); };
    };
    alternate<Start>(options, {side("measured-panel"), side("measured-engine")},
                     [&](std::vector<Start> const& starts) {
                         time.add(starts[0].milliseconds, starts[1].milliseconds);
                         interfaceMemory.add(starts[0].interfaceMemory, starts[1].interfaceMemory);
                         webMemory.add(starts[0].webMemory, starts[1].webMemory);
                     });
    report.print(time);
    report.print(interfaceMemory);
    report.print(webMemory);
}

} // namespace

int main(int argc, char** argv) {
    auto const options = readOptions(argc, argv, "a fresh process: time to a finished page, and memory", 11);
    return runProgram(options, [&options](Report& report) { measure(options, report); });
}
