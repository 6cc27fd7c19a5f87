#include "Contract/BareBusClient.h"
#include "Contract/TestBus.h"
#include "Contract/TurnUntil.h"
#include "Doubles/FakeMainLoop.h"
#include "Doubles/FakeSystem.h"
#include "FcpExtension/ContainerAppBridge.h"
#include "Platform/Gtk/SdBusNotificationCenter.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

using fcp::Json;
using fcp::Notification;
using fcp::test::BareBusClient;
using fcp::test::turnUntil;

namespace {

constexpr int answers = 100'000;
std::string const response = "com.zelvix.fcp.containerResponse";

class SdBusFlood : public testing::Test {
protected:
    SdBusFlood() {
        bus.start();
        center = std::make_unique<fcp::SdBusNotificationCenter>(loop, bus.address());
        center->observe("test.bus.ready", [this](Notification const&) { ready = true; });
    }

    // Waits until the bus knows what the centre observes: another process may then send.
    [[nodiscard]] bool isReady() {
        center->post("test.bus.ready", Json::object());
        return turnUntil([this] { return ready; });
    }

    // Another process answers a hundred thousand times, and is gone when this returns. All that waits then.
    void flood(void (*answer)(BareBusClient const& container, int number)) const {
        auto const child = fork();
        if (child == 0) {
            BareBusClient const container(bus.address());
            for (int i = 0; i < answers; ++i)
                answer(container, i);
            _exit(testing::Test::HasFailure() ? 1 : 0);
        }
        int status = -1;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }

    fcp::test::TestBus bus;
    fcp::test::FakeMainLoop loop;
    std::unique_ptr<fcp::SdBusNotificationCenter> center;
    bool ready = false;
};

TEST_F(SdBusFlood, LosesNothingKeepsTheOrderAndLetsOtherSourcesHaveTheirTurn) {
    int heard = 0;
    int inOrder = 0;
    center->observe(response, [&](Notification const& notification) {
        inOrder += notification.userInfo->at("n") == heard ? 1 : 0;
        ++heard;
    });
    ASSERT_TRUE(isReady());
    flood([](BareBusClient const& container, int number) {
        container.emit("containerResponse", "a{sv}", 3, "n", "i", number, "requestId", "s", "req-1-ABCDEF",
                       "result", "b", 1);
    });
    int turns = 0;
    auto const idle = g_idle_add_full(
        G_PRIORITY_LOW,
        [](gpointer count) -> gboolean {
            ++*static_cast<int*>(count);
            return G_SOURCE_CONTINUE;
        },
        &turns, nullptr);
    EXPECT_TRUE(turnUntil([&heard] { return heard == answers; }));
    g_source_remove(idle);
    EXPECT_EQ(inOrder, answers);
    EXPECT_GT(turns, 10);
}

// One of every eight answers the request that waits; the first of these comes half-way.
void answerOddly(BareBusClient const& container, int number) {
    char const* const id = number < answers / 2 ? "req-1-5C08E1" : "req-1-000001";
    char const* const member = "containerResponse";
    switch (number % 8) {
    case 0:
        return container.emit(member, "a{sv}", 2, "requestId", "s", id, "result", "b", 1);
    case 1:
        return container.emit(member, "a{sv}", 2, "requestId", "i", 1, "result", "b", 0);
    case 2:
        return container.emit(member, "a{sv}", 1, "result", "b", 0);
    case 3:
        return container.emit(member, "s", id);
    case 4:
        return container.emit(member, "a{ss}", 2, "requestId", id, "result", "false");
    case 5:
        return container.emit(member, "(a{sv})", 2, "requestId", "s", id, "result", "b", 0);
    case 6:
        return container.emit(member, "a{sv}", 2, "requestId", "o", "/req", "result", "a(so)", 1, "x", "/a");
    default:
        return container.emit(member, "");
    }
}

TEST_F(SdBusFlood, AnswersARequestOnceWhateverElseArrives) {
    fcp::test::FakeUuidGenerator uuids;
    auto const bridge = fcp::ContainerAppBridge::create(*center, uuids, loop);
    int heard = 0;
    center->observe(response, [&](Notification const& notification) {
        bridge->handleResponse(notification);
        ++heard;
    });
    ASSERT_TRUE(isReady());
    std::vector<bool> results;
    bridge->clearAllMarkers(
        {"clearAllMarkers()", [&results](auto outcome) { results.push_back(std::get<bool>(outcome)); }});
    flood(answerOddly);
    EXPECT_TRUE(turnUntil([&heard] { return heard == answers; }));
    EXPECT_EQ(results, std::vector<bool>{true});
    EXPECT_EQ(bridge->pendingRequestCount(), 0U);
}

} // namespace
