#pragma once

#include "benches/Harness/SideProcess.h"
#include "benches/Harness/Trips.h"

namespace fcp::bench {

// What answers container commands, of ours and of the floor. Answers from the construction on.
class ContainerSide {
public:
    ContainerSide();

private:
    SideProcess process;
};

// The bare bus, with an answer for each command.
class BusSide {
public:
    BusSide();

    // One at a time.
    [[nodiscard]] Trip shortCommands(int count);
    [[nodiscard]] Trip oneMegabyteCommands(int count);

private:
    [[nodiscard]] Trip run(std::string const& kind, int count);

    SideProcess process;
};

} // namespace fcp::bench
