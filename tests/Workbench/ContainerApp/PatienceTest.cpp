#include "Workbench/ContainerApp/ContainerFixture.h"
#include "Workbench/ContainerApp/PrivateBus.h"

namespace workbench {

namespace {

using MuteEditorTest = ContainerFixture;

}

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

TEST_F(MuteEditorTest, IsNotWaitedForLongerThanSomeSeconds) {
    auto const editor = EditorDouble{sequenceNamed("one")}; // nobody lets it answer
    client.settle();
    auto const requestId = client.send("syncComment", {{"comment", {{"id", "a"}, {"seconds", 1}}}});
    client.settle();
    EXPECT_EQ(0U, client.answerCount());
    ASSERT_TRUE(client.waitFor([&] { return !client.answers(requestId).empty(); }));
    EXPECT_EQ(std::vector{Json(true)}, client.answers(requestId));
    EXPECT_EQ("default\n", sql("SELECT key FROM sequences"));
}

} // namespace workbench
