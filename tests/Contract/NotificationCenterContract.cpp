#include "Contract/TestBus.h"
#include "Contract/TurnUntil.h"
#include "Doubles/FakeMainLoop.h"
#include "Doubles/FakeNotificationCenter.h"
#include "Platform/Gtk/SdBusNotificationCenter.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

using fcp::Json;
using fcp::Notification;
using fcp::NotificationCenter;

namespace {

std::string const command = "com.zelvix.fcp.containerCommand";
std::string const response = "com.zelvix.fcp.containerResponse";

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

    void settle() {}

private:
    fcp::test::Journal journal;
    fcp::test::FakeNotificationCenter fake{journal};
};

class SessionBus {
public:
    SessionBus() {
        far.observe(command, [this](Notification const& notification) { heard.push_back(notification); });
        far.observe("test.bus.far", [this](Notification const&) { ++echoes; });
        near.observe("test.bus.near", [this](Notification const&) { ++echoes; });
        settle();
    }

    [[nodiscard]] NotificationCenter& center() { return near; }

    void deliver(std::string const& name, Json const& userInfo) { far.post(name, userInfo); }

    [[nodiscard]] std::vector<Notification> const& heardElsewhere() const { return heard; }

    [[nodiscard]] static bool wait(std::function<bool()> const& condition) {
        return fcp::test::turnUntil(condition);
    }

    // The bus serves its connections in an order of its own: waits until it knows all that either observes.
    void settle() {
        auto const enough = echoes + 2;
        near.post("test.bus.near", Json::object());
        far.post("test.bus.far", Json::object());
        EXPECT_TRUE(wait([this, enough] { return echoes == enough; }));
    }

private:
    struct StartedBus : fcp::test::TestBus {
        StartedBus() { start(); }
    };

    StartedBus bus;
    fcp::test::FakeMainLoop loop;
    std::vector<Notification> heard;
    int echoes = 0;
    fcp::SdBusNotificationCenter near{loop, bus.address()};
    fcp::SdBusNotificationCenter far{loop, bus.address()};
};

template <typename Carrier>
class NotificationCenterContract : public testing::Test {
protected:
    // Notes every notification of the name as it comes.
    void note(std::string const& name, std::string const& observer = {}) {
        carrier.center().observe(name, [this, observer](Notification const& notification) {
            heard.push_back(notification);
            order.push_back(observer);
        });
        carrier.settle();
    }

    // A notification that marks the end of what was delivered before it.
    [[nodiscard]] bool deliverLast() {
        bool arrived = false;
        carrier.center().observe("test.bus.last", [&arrived](Notification const&) { arrived = true; });
        carrier.settle();
        carrier.deliver("test.bus.last", Json::object());
        return carrier.wait([&arrived] { return arrived; });
    }

    Carrier carrier;
    std::vector<Notification> heard;
    std::vector<std::string> order;
};

using Carriers = testing::Types<Double, SessionBus>;

TYPED_TEST_SUITE(NotificationCenterContract, Carriers);

TYPED_TEST(NotificationCenterContract, HearsWhatIsPostedElsewhere) {
    Json const userInfo{{"requestId", "req-1-5C08E1"},
                        {"result", {{"start", 12.5}, {"text", "Łódź"}, {"end", nullptr}}}};
    this->note(response);
    this->carrier.deliver(response, userInfo);
    ASSERT_TRUE(this->carrier.wait([this] { return !this->heard.empty(); }));
    EXPECT_EQ(this->heard[0].name, response);
    EXPECT_EQ(this->heard[0].userInfo, userInfo);
}

TYPED_TEST(NotificationCenterContract, HearsNothingOfOtherNames) {
    this->note("com.zelvix.fcp.container");
    this->note("com.zelvix.fcp.containerResponses");
    this->note("com.zelvix.fcp");
    this->carrier.deliver(response, Json::object());
    ASSERT_TRUE(this->deliverLast());
    EXPECT_TRUE(this->heard.empty());
}

TYPED_TEST(NotificationCenterContract, CallsTheObserversOfANameInTheirOrder) {
    this->note(response, "first");
    this->note(command, "another name");
    this->note(response, "second");
    this->carrier.deliver(response, {{"n", 1}});
    ASSERT_TRUE(this->deliverLast());
    EXPECT_EQ(this->order, (std::vector<std::string>{"first", "second"}));
}

TYPED_TEST(NotificationCenterContract, DeliversInTheOrderOfThePosts) {
    this->note(response);
    for (int i = 0; i < 1000; ++i)
        this->carrier.deliver(response, {{"n", i}});
    ASSERT_TRUE(this->carrier.wait([this] { return this->heard.size() == 1000; }));
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(this->heard[static_cast<std::size_t>(i)].userInfo->at("n"), i);
}

TYPED_TEST(NotificationCenterContract, PostsNameAndUserInfoAsTheyAre) {
    Json const userInfo{{"command", "syncComment"}, {"comment", {{"seconds", 3}, {"tags", {"a", nullptr}}}}};
    this->carrier.center().post(command, userInfo);
    auto const& posted = this->carrier.heardElsewhere();
    ASSERT_TRUE(this->carrier.wait([&posted] { return !posted.empty(); }));
    EXPECT_EQ(posted[0].name, command);
    EXPECT_EQ(posted[0].userInfo, userInfo);
}

TYPED_TEST(NotificationCenterContract, PostsFromInsideAnObserver) {
    this->carrier.center().observe(response, [this](Notification const& notification) {
        this->carrier.center().post(command, {{"after", notification.userInfo->at("n")}});
    });
    this->carrier.settle();
    this->carrier.deliver(response, {{"n", 1}});
    this->carrier.deliver(response, {{"n", 2}});
    auto const& posted = this->carrier.heardElsewhere();
    ASSERT_TRUE(this->carrier.wait([&posted] { return posted.size() == 2; }));
    EXPECT_EQ(posted[0].userInfo, (Json{{"after", 1}}));
    EXPECT_EQ(posted[1].userInfo, (Json{{"after", 2}}));
}

} // namespace
