#include "Contract/TestBus.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

namespace fcp::test {

namespace {

std::string withLimits(std::string const& limits) {
    std::stringstream configuration;
    configuration << std::ifstream(TEST_BUS_CONFIGURATION).rdbuf();
    auto text = configuration.str();
    text.insert(text.rfind("</busconfig>"), limits);
    return text;
}

} // namespace

TestBus::TestBus()
    : folder("/tmp/fcp-test-bus.XXXXXX") {
    EXPECT_NE(mkdtemp(folder.data()), nullptr);
}

TestBus::~TestBus() {
    kill();
    std::filesystem::remove_all(folder);
}

void TestBus::start(std::string const& limits) {
    std::string const configuration = folder + "/configuration";
    std::ofstream(configuration) << withLimits(limits);
    daemon.emplace(std::vector<std::string>{"dbus-daemon", "--config-file=" + configuration, "--nofork",
                                            "--nopidfile", "--print-address", "--address=" + address()});
    // It prints its address once it listens there.
    EXPECT_TRUE(daemon->readLine().starts_with(address()));
}

void TestBus::kill() {
    daemon.reset();
    std::filesystem::remove(socketPath());
}

} // namespace fcp::test
