#pragma once

#include "Contract/ChildProcess.h"

#include <optional>
#include <string>

namespace fcp::test {

// A message bus of the test's own, which it may kill and start again at the same address.
class TestBus {
public:
    TestBus();
    ~TestBus();

    TestBus(TestBus const&) = delete;
    TestBus& operator=(TestBus const&) = delete;

    // Returns when the bus takes connections. `limits` are elements of its configuration.
    void start(std::string const& limits = {});
    void kill();

    // Stops and resumes it in place: it keeps its connections, but reads nothing.
    void stall() const { daemon->stall(); }

    void resume() const { daemon->resume(); }

    [[nodiscard]] std::string address() const { return "unix:path=" + socketPath(); }

    [[nodiscard]] std::string socketPath() const { return folder + "/bus"; }

private:
    std::string folder;
    std::optional<ChildProcess> daemon;
};

} // namespace fcp::test
