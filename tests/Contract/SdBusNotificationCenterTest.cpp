#include "Platform/Gtk/SdBusNotificationCenter.h"
#include "Contract/BareBusClient.h"
#include "Contract/TestBus.h"
#include "Contract/TurnUntil.h"
#include "Doubles/FakeMainLoop.h"
#include "Platform/Gtk/BusConversions.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

using fcp::Json;
using fcp::Notification;
using fcp::SdBusNotificationCenter;
using fcp::test::BareBusClient;
using fcp::test::turnUntil;

namespace {

static_assert(!std::is_copy_constructible_v<SdBusNotificationCenter>);
static_assert(!std::is_move_constructible_v<SdBusNotificationCenter>);
static_assert(!std::is_move_constructible_v<fcp::SdBusConnection>);
static_assert(!std::is_move_constructible_v<fcp::SdBusSource>);

std::string const command = "com.zelvix.fcp.containerCommand";
std::string const response = "com.zelvix.fcp.containerResponse";

class SdBusNotificationCenterTest : public testing::Test {
protected:
    SdBusNotificationCenterTest() {
        bus.start();
        foreign = std::make_unique<BareBusClient>(bus.address());
        foreign->listen();
        center = std::make_unique<SdBusNotificationCenter>(loop, bus.address());
        observe(response);
        EXPECT_TRUE(echoes());
    }

    void observe(std::string const& name) {
        center->observe(name, [this](Notification const& notification) { heard.push_back(notification); });
    }

    // True once a post has come back: then the centre is connected and has heard what it posted before.
    [[nodiscard]] bool echoes() {
        center->observe("test.bus.echo", [this](Notification const&) { ++echo; });
        auto const next = echo + 1;
        center->post("test.bus.echo", Json::object());
        return turnUntil([this, next] { return echo >= next; });
    }

    // True once the centre has heard what the foreign program emitted before; the order holds for one sender.
    [[nodiscard]] bool hearsForeign() {
        auto const next = echo + 1;
        auto const signal = foreign->makeSignal("/com/zelvix/fcp", "test.bus", "echo");
        EXPECT_TRUE(fcp::appendUserInfo(*signal, Json::object()));
        foreign->send(signal);
        return turnUntil([this, next] { return echo >= next; });
    }

    fcp::test::TestBus bus;
    fcp::test::FakeMainLoop loop;
    std::unique_ptr<SdBusNotificationCenter> center;
    std::unique_ptr<BareBusClient> foreign;
    std::vector<Notification> heard;
    int echo = 0;
};

TEST_F(SdBusNotificationCenterTest, HasPostedWhenPostReturns) {
    center->post(command, {{"command", "openURL"}});
    // The main loop does not turn any more; the foreign program needs none.
    EXPECT_TRUE(foreign->receive());
}

TEST_F(SdBusNotificationCenterTest, PostsABroadcastSignalWithOneDictionary) {
    center->post(command, {{"command", "openURL"}});
    auto const signal = foreign->receive();
    ASSERT_TRUE(signal);
    EXPECT_STREQ(sd_bus_message_get_path(signal.get()), "/com/zelvix/fcp");
    EXPECT_STREQ(sd_bus_message_get_interface(signal.get()), "com.zelvix.fcp");
    EXPECT_STREQ(sd_bus_message_get_member(signal.get()), "containerCommand");
    EXPECT_STREQ(sd_bus_message_get_signature(signal.get(), 1), "a{sv}");
    EXPECT_EQ(sd_bus_message_get_destination(signal.get()), nullptr);
}

TEST_F(SdBusNotificationCenterTest, SendsWhatIsPostedBeforeTheBusLetItIn) {
    SdBusNotificationCenter young(loop, bus.address());
    bool back = false;
    young.observe(command, [&back](Notification const&) { back = true; });
    young.post(command, {{"command", "openURL"}});
    EXPECT_TRUE(turnUntil([&back] { return back; }));
}

TEST_F(SdBusNotificationCenterTest, HearsItsOwnBroadcasts) {
    observe(command);
    center->post(command, {{"command", "openURL"}});
    ASSERT_TRUE(echoes());
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_EQ(heard[0].userInfo, (Json{{"command", "openURL"}}));
}

TEST_F(SdBusNotificationCenterTest, NamesTheSenderOnTheBusAsTheObject) {
    foreign->emit("containerResponse", "a{sv}", 0);
    ASSERT_TRUE(hearsForeign());
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_EQ(heard[0].object, foreign->uniqueName());
}

TEST_F(SdBusNotificationCenterTest, DeliversEveryOtherSignatureWithoutUserInfo) {
    foreign->emit("containerResponse", "");
    foreign->emit("containerResponse", "s", "req-1-5C08E1");
    foreign->emit("containerResponse", "a{ss}", 1, "requestId", "req-1-5C08E1");
    foreign->emit("containerResponse", "(a{sv})", 1, "requestId", "s", "req-1-5C08E1");
    foreign->emit("containerResponse", "a{sv}s", 1, "requestId", "s", "req-1-5C08E1", "more");
    ASSERT_TRUE(hearsForeign());
    ASSERT_EQ(heard.size(), 5U);
    for (auto const& notification : heard)
        EXPECT_EQ(notification.userInfo, std::nullopt);
}

TEST_F(SdBusNotificationCenterTest, HearsWhatIsSentToItAlone) {
    auto const unique = [this] {
        center->post(command, Json::object());
        auto const signal = foreign->receive();
        return std::string(sd_bus_message_get_sender(signal.get()));
    }();
    auto const signal = foreign->makeSignal("/com/zelvix/fcp", "com.zelvix.fcp", "containerResponse");
    ASSERT_TRUE(fcp::appendUserInfo(*signal, {{"result", true}}));
    foreign->send(signal, unique.c_str());
    ASSERT_TRUE(hearsForeign());
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_EQ(heard[0].userInfo, (Json{{"result", true}}));
}

TEST_F(SdBusNotificationCenterTest, HearsNothingOfOtherPathsAndInterfaces) {
    for (auto const& [path, interface] : {std::pair("/com/zelvix", "com.zelvix.fcp"),
                                          std::pair("/com/zelvix/fcp", "com.zelvix.fcp.Markers1")}) {
        auto const signal = foreign->makeSignal(path, interface, "containerResponse");
        ASSERT_TRUE(fcp::appendUserInfo(*signal, Json::object()));
        foreign->send(signal);
    }
    ASSERT_TRUE(hearsForeign());
    EXPECT_TRUE(heard.empty());
}

TEST_F(SdBusNotificationCenterTest, DropsNamesThatMakeNoSignal) {
    for (std::string const name :
         {"", "nodot", ".leading", "com.zelvix.fcp.", "com..zelvix.fcp", "com.zelvix.1st",
          "com.zelvix.fcp',member='any.thing", "com.zelvix.f\xFF.x", "one.two"}) {
        observe(name);
        center->post(name, Json::object());
    }
    ASSERT_TRUE(echoes());
    EXPECT_TRUE(heard.empty());
}

TEST_F(SdBusNotificationCenterTest, StaysOnTheBusWhateverItIsToPost) {
    Json deep = "leaf";
    for (int i = 0; i < 31; ++i)
        deep = Json::array({deep});
    center->post(command, {{"deep", deep}});
    center->post(command, {{"large", std::string(fcp::maximumBodySize, 'x')}});
    center->post(command, {{"text", "\xED\xA0\x80"}});
    center->post(command, "no object");
    center->post(command, {{"last", true}});
    ASSERT_TRUE(echoes());
    EXPECT_EQ(fcp::readUserInfo(*foreign->receive()), (Json{{"text", "\uFFFD\uFFFD\uFFFD"}}));
    EXPECT_EQ(fcp::readUserInfo(*foreign->receive()), (Json{{"last", true}}));
    EXPECT_EQ(loop.pending(), 0U) << "the bus cut us off";
}

TEST_F(SdBusNotificationCenterTest, CarriesSixteenMebibytesAndSixtyFourLevels) {
    Json deep = "leaf";
    for (int i = 0; i < 29; ++i)
        deep = Json::array({deep});
    Json const userInfo{{"deep", {{"list", deep}}}, {"large", std::string(fcp::maximumBodySize - 1024, 'x')}};
    observe(command);
    center->post(command, userInfo);
    ASSERT_TRUE(turnUntil([this] { return !heard.empty(); }));
    EXPECT_TRUE(heard[0].userInfo == userInfo);
    EXPECT_EQ(loop.pending(), 0U) << "the bus cut us off";
}

TEST_F(SdBusNotificationCenterTest, LetsAnObserverAddAnother) {
    center->observe(response, [this](Notification const&) { observe(response); });
    foreign->emit("containerResponse", "a{sv}", 0);
    ASSERT_TRUE(hearsForeign());
    foreign->emit("containerResponse", "a{sv}", 0);
    ASSERT_TRUE(hearsForeign());
    EXPECT_GE(heard.size(), 4U);
}

TEST_F(SdBusNotificationCenterTest, MayBeDestroyedByItsOwnObserver) {
    center->observe(response, [this](Notification const&) { center.reset(); });
    foreign->emit("containerResponse", "a{sv}", 0);
    foreign->emit("containerResponse", "a{sv}", 0);
    EXPECT_TRUE(turnUntil([this] { return center == nullptr; }));
    fcp::test::turnWhileReady();
    EXPECT_EQ(heard.size(), 1U);
}

TEST_F(SdBusNotificationCenterTest, FindsTheSessionBusOfTheEnvironment) {
    ASSERT_EQ(setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1), 0);
    center = std::make_unique<SdBusNotificationCenter>(loop);
    EXPECT_TRUE(echoes());
}

TEST_F(SdBusNotificationCenterTest, GoesThroughAListOfAddresses) {
    auto const addresses = "unix:path=/nonexistent/bus;tcp:host=127.0.0.1,port=1;" + bus.address();
    center.reset();
    // Free again when the second address is refused, so that the third connection has another descriptor.
    int const lowest = dup(STDOUT_FILENO);
    center = std::make_unique<SdBusNotificationCenter>(loop, addresses);
    close(lowest);
    EXPECT_TRUE(echoes());
    for (int turns = 0; turns < 100; ++turns)
        g_main_context_iteration(nullptr, FALSE);
    EXPECT_FALSE(g_main_context_pending(nullptr)) << "the loop spins on a descriptor that is closed";
}

} // namespace
