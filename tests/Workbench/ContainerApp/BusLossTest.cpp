#include "Workbench/ContainerApp/BusClient.h"
#include "Workbench/ContainerApp/ContainerProcess.h"
#include "Workbench/ContainerApp/PrivateBus.h"

#include <gtest/gtest.h>

#include <csignal>
#include <optional>

namespace workbench {

namespace {

class BusLossTest : public testing::Test {
protected:
    BusLossTest() {
        container.emplace(std::vector<std::string>{"--no-window", "--database", folder / "store.sqlite"});
        EXPECT_TRUE(container->isReady());
    }

    static Json sync(BusClient& client, std::string const& id) {
        return client.request("syncComment", {{"comment", {{"id", id}, {"seconds", 1}}}});
    }

    [[nodiscard]] bool says(std::string const& words) {
        return waitUntil(
            [&] { return (container->output() + container->complaints()).find(words) != std::string::npos; });
    }

    PrivateBus bus;
    TemporaryFolder folder;
    std::optional<ContainerProcess> container;
};

} // namespace

TEST_F(BusLossTest, AnswersAgainWhenTheBusIsBack) {
    {
        auto client = BusClient{};
        EXPECT_EQ(true, sync(client, "a"));
    }
    bus.kill();
    ASSERT_TRUE(says("the session bus is gone"));
    bus.start();
    ASSERT_TRUE(says("back on the session bus"));
    auto client = BusClient{};
    EXPECT_EQ(true, sync(client, "b"));
    EXPECT_EQ(2U, client.markers("default").at("markers").size());
}

TEST_F(BusLossTest, SurvivesABusThatGoesTwice) {
    for (auto round = 0; round < 2; ++round) {
        bus.kill();
        ASSERT_TRUE(waitUntil([&] {
            auto const complaints = container->complaints();
            return std::count(complaints.begin(), complaints.end(), '\n') == round + 1;
        }));
        bus.start();
        ASSERT_TRUE(waitUntil([&] {
            auto const output = container->output();
            return std::count(output.begin(), output.end(), '\n') == round + 2;
        }));
    }
    auto client = BusClient{};
    EXPECT_EQ(true, sync(client, "a"));
}

TEST_F(BusLossTest, SurvivesALostBusAlsoAfterItHasOpenedALink) {
    {
        auto client = BusClient{};
        EXPECT_EQ(false, client.request("openURL", {{"url", "https://example.com/"}}));
    }
    bus.kill();
    ASSERT_TRUE(says("the session bus is gone"));
    bus.start();
    ASSERT_TRUE(says("back on the session bus"));
}

TEST_F(BusLossTest, EndsInOrderWithoutABus) {
    bus.kill();
    ASSERT_TRUE(says("the session bus is gone"));
    container->signal(SIGTERM);
    EXPECT_EQ(0, container->wait());
    EXPECT_EQ("store.sqlite", folder.names());
}

TEST_F(BusLossTest, GivesWayToWhoHasTakenItsPlaceInTheMeantime) {
    container->signal(SIGSTOP);
    bus.kill();
    bus.start();
    auto client = BusClient{};
    ASSERT_EQ(Bus::Name::Owned, client.connection().requestName("com.zelvix.fcp.Container"));
    container->signal(SIGCONT);
    EXPECT_EQ(3, container->wait());
    EXPECT_TRUE(says("another one is running already"));
}

TEST_F(BusLossTest, DoesNotStartWithoutABus) {
    bus.kill();
    auto second = ContainerProcess{{"--no-window", "--database", folder / "other.sqlite"}};
    EXPECT_EQ(4, second.wait());
    EXPECT_EQ(0U, second.complaints().find("zelvix-container: there is no session bus: "));
    EXPECT_FALSE(std::filesystem::exists(folder / "other.sqlite"));
}

} // namespace workbench
