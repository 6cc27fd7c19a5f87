#include "Workbench/ContainerApp/ContainerProcess.h"
#include "Workbench/ContainerApp/PrivateBus.h"

#include <gtest/gtest.h>

namespace workbench {

TEST(BusPatience, EndsWhenTheBusDoesNotComeBack) {
    auto bus = PrivateBus{};
    auto const folder = TemporaryFolder{};
    auto container = ContainerProcess{{"--no-window", "--database", folder / "store.sqlite"}};
    ASSERT_TRUE(container.isReady());
    bus.kill();
    EXPECT_EQ(4, container.wait(std::chrono::seconds{60}));
    EXPECT_NE(std::string::npos, container.complaints().find("the session bus does not come back"));
    EXPECT_EQ("store.sqlite", folder.names());
}

} // namespace workbench
