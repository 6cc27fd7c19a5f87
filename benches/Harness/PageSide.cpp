#include "benches/Harness/PageSide.h"

#include "benches/Harness/ProcessFigures.h"

#include <utility>

namespace fcp::bench {

namespace {

std::vector<std::string> withURL(std::vector<std::string> arguments, std::string url) {
    arguments.push_back(std::move(url));
    return arguments;
}

} // namespace

PageSide::PageSide(RoundServer& pageServer, std::string pageName, std::string const& program,
                   std::vector<std::string> arguments)
    : server(pageServer)
    , name(std::move(pageName))
    , process(program, withURL(std::move(arguments), server.pageURL(name)), SideProcess::Pipes::None) {}

Json PageSide::run(Json const& round) {
    auto const before = processorTime(process.pid());
    auto result = server.run(name, round, [this] { return process.isRunning(); });
    result["processor"] = processorTime(process.pid()) - before;
    return result;
}

} // namespace fcp::bench
