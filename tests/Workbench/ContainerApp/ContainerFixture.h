#pragma once

#include "Workbench/ContainerApp/BusClient.h"
#include "Workbench/ContainerApp/ContainerProcess.h"
#include "Workbench/ContainerApp/EditorDouble.h"
#include "Workbench/ContainerApp/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace workbench {

// A container with a store of its own, without a window, and somebody who talks to it.
class ContainerFixture : public testing::Test {
protected:
    void SetUp() override { startContainer(); }

    void startContainer(ProcessLimits const& limits = {}) {
        container.reset();
        container = std::make_unique<ContainerProcess>(
            std::vector<std::string>{"--no-window", "--verbose", "--database", database}, limits);
        ASSERT_TRUE(container->isReady()) << container->complaints();
    }

    // The row or rows that a query finds, as the sqlite3 program prints them.
    [[nodiscard]] std::string sql(std::string const& query) const {
        return outputOf("sqlite3 '" + database + "' \"" + query + "\"");
    }

    [[nodiscard]] Json sync(Json const& comment) {
        return client.request("syncComment", {{"comment", comment}});
    }

    [[nodiscard]] Json markerAt(double seconds, double threshold = 0.5) {
        return client.request("getMarkerAtTime", {{"seconds", seconds}, {"threshold", threshold}});
    }

    [[nodiscard]] bool complains(std::string const& words) {
        return waitUntil([&] { return container->complaints().find(words) != std::string::npos; });
    }

    TemporaryFolder folder;
    std::string database = folder / "store.sqlite";
    BusClient client;
    std::unique_ptr<ContainerProcess> container;
};

[[nodiscard]] inline HostSequence sequenceNamed(std::string const& key) {
    auto sequence = HostSequence{};
    sequence.key = key;
    sequence.name = "Reel " + key;
    sequence.uri = "file:///" + key;
    sequence.rate = FrameRate{24000, 1001};
    sequence.durationFrames = 480;
    return sequence;
}

} // namespace workbench
