#include "benches/Harness/BusSide.h"

#include "benches/Harness/ProcessFigures.h"

#include <stdexcept>

namespace fcp::bench {

ContainerSide::ContainerSide()
    : process("measured-container", {}, SideProcess::Pipes::Both) {
    if (process.readLine() != "ready")
        throw std::runtime_error("measured-container is not ready");
}

BusSide::BusSide()
    : process("measured-bus", {}, SideProcess::Pipes::Both) {}

Trip BusSide::shortCommands(int count) {
    return run("trips", count);
}

Trip BusSide::oneMegabyteCommands(int count) {
    return run("comments", count);
}

Trip BusSide::run(std::string const& kind, int count) {
    auto const before = processorTime(process.pid());
    process.writeLine(kind + " " + std::to_string(count));
    auto const perTrip = 1000.0 / count;
    auto const microseconds = std::stod(process.readLine()) * perTrip;
    return {microseconds, (processorTime(process.pid()) - before) * perTrip};
}

} // namespace fcp::bench
