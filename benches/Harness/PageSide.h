#pragma once

#include "benches/Harness/RoundServer.h"
#include "benches/Harness/SideProcess.h"

#include <string>
#include <vector>

namespace fcp::bench {

// A side that shows the measured page, and does its rounds there.
class PageSide {
public:
    // `name` tells the pages of one server apart.
    PageSide(RoundServer& pageServer, std::string pageName, std::string const& program,
             std::vector<std::string> arguments = {});

    // The page's result, and in "processor" the milliseconds that the UI process worked.
    [[nodiscard]] Json run(Json const& round);

private:
    RoundServer& server;
    std::string const name;
    SideProcess process;
};

} // namespace fcp::bench
