#include "Contract/NotificationCenterContract.h"

#include "Contract/TestBus.h"
#include "Contract/TurnUntil.h"
#include "Doubles/FakeMainLoop.h"
#include "Doubles/FakeNotificationCenter.h"
#include "Platform/Gtk/SdBusNotificationCenter.h"

namespace fcp::test {

namespace {

class Double {
public:
    [[nodiscard]] NotificationCenter& center() { return fake; }

    // As if another process had posted it.
    void deliver(std::string const& name, Json const& userInfo) {
        fake.deliver({name, std::nullopt, userInfo});
    }

    // What other processes heard of our commands.
    [[nodiscard]] std::vector<Notification> const& heardElsewhere() const { return fake.posted; }

    [[nodiscard]] static bool wait(std::function<bool()> const& condition) { return condition(); }

    [[nodiscard]] static Json carried(Json const& userInfo) { return userInfo; }

    void settle() {}

private:
    Journal journal;
    FakeNotificationCenter fake{journal};
};

class SessionBus {
public:
    SessionBus() {
        far.observe(commandName, [this](Notification const& notification) { heard.push_back(notification); });
        far.observe("test.bus.far", [this](Notification const&) { ++echoes; });
        near.observe("test.bus.near", [this](Notification const&) { ++echoes; });
        settle();
    }

    [[nodiscard]] NotificationCenter& center() { return near; }

    void deliver(std::string const& name, Json const& userInfo) { far.post(name, userInfo); }

    [[nodiscard]] std::vector<Notification> const& heardElsewhere() const { return heard; }

    [[nodiscard]] static bool wait(std::function<bool()> const& condition) { return turnUntil(condition); }

    [[nodiscard]] static Json carried(Json const& userInfo) { return userInfo; }

    // The bus serves its connections in an order of its own: waits until it knows all that either observes.
    void settle() {
        auto const enough = echoes + 2;
        near.post("test.bus.near", Json::object());
        far.post("test.bus.far", Json::object());
        EXPECT_TRUE(wait([this, enough] { return echoes == enough; }));
    }

private:
    struct StartedBus : TestBus {
        StartedBus() { start(); }
    };

    StartedBus bus;
    FakeMainLoop loop;
    std::vector<Notification> heard;
    int echoes = 0;
    SdBusNotificationCenter near{loop, bus.address()};
    SdBusNotificationCenter far{loop, bus.address()};
};

using Carriers = testing::Types<Double, SessionBus>;

INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, NotificationCenterContract, Carriers);

using SessionBusTest = NotificationCenterContract<SessionBus>;

TEST_F(SessionBusTest, CallsTheObserversOfANameInTheirOrder) {
    note(responseName, "first");
    note(commandName, "another name");
    note(responseName, "second");
    carrier.deliver(responseName, {{"n", 1}});
    ASSERT_TRUE(deliverLast());
    EXPECT_EQ(order, (std::vector<std::string>{"first", "second"}));
}

} // namespace

} // namespace fcp::test
