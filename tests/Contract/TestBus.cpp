#include "Contract/TestBus.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace fcp::test {

TestBus::TestBus()
    : folder("/tmp/fcp-test-bus.XXXXXX") {
    EXPECT_NE(mkdtemp(folder.data()), nullptr);
}

TestBus::~TestBus() {
    kill();
    std::filesystem::remove_all(folder);
}

void TestBus::start() {
    daemon.emplace(std::vector<std::string>{"dbus-daemon", "--config-file=" TEST_BUS_CONFIGURATION,
                                            "--nofork", "--nopidfile", "--print-address",
                                            "--address=" + address()});
    // It prints its address once it listens there.
    EXPECT_TRUE(daemon->readLine().starts_with(address()));
}

void TestBus::kill() {
    daemon.reset();
    std::filesystem::remove(socketPath());
}

} // namespace fcp::test
