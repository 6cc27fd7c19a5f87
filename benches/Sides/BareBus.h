#pragma once

#include "benches/Sides/Comments.h"

#include <functional>
#include <string>
#include <vector>

struct sd_bus;

namespace fcp::bench {

// The floor of the container's channel: sd-bus in a source of GLib's loop, and nothing else. What fails ends
// the process.
class BareBus {
public:
    using Answered = std::function<void(std::string const& requestId)>;

    explicit BareBus(Answered onAnswer);

    BareBus(BareBus const&) = delete;
    BareBus& operator=(BareBus const&) = delete;

    // With comments they are all synchronised; with none it is a deletion, which has a short argument.
    void sendCommand(std::string const& requestId, std::vector<Comment> const& comments = {});

private:
    Answered const onAnswered;
    sd_bus* bus = nullptr; // as long as the process
};

} // namespace fcp::bench
