#pragma once

#include "Ports/NotificationCenter.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace fcp::test {

inline std::string const commandName = "com.zelvix.fcp.containerCommand";
inline std::string const responseName = "com.zelvix.fcp.containerResponse";

// A carrier has the `center` under test, delivers as another process does, keeps what others heard of our
// commands, and tells how a user info looks when it was carried.
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

TYPED_TEST_SUITE_P(NotificationCenterContract);

TYPED_TEST_P(NotificationCenterContract, HearsWhatIsPostedElsewhere) {
    Json const userInfo{{"requestId", "req-1-5C08E1"},
                        {"result", {{"start", 12.5}, {"text", "Łódź"}, {"end", nullptr}}}};
    this->note(responseName);
    this->carrier.deliver(responseName, userInfo);
    ASSERT_TRUE(this->carrier.wait([this] { return !this->heard.empty(); }));
    EXPECT_EQ(this->heard[0].name, responseName);
    EXPECT_EQ(this->heard[0].userInfo, this->carrier.carried(userInfo));
}

TYPED_TEST_P(NotificationCenterContract, HearsNothingOfOtherNames) {
    this->note("com.zelvix.fcp.container");
    this->note("com.zelvix.fcp.containerResponses");
    this->note("com.zelvix.fcp");
    this->carrier.deliver(responseName, Json::object());
    ASSERT_TRUE(this->deliverLast());
    EXPECT_TRUE(this->heard.empty());
}

TYPED_TEST_P(NotificationCenterContract, CallsEveryObserverOfANameAndNoOther) {
    this->note(responseName, "first");
    this->note(commandName, "another name");
    this->note(responseName, "second");
    this->carrier.deliver(responseName, {{"n", 1}});
    ASSERT_TRUE(this->deliverLast());
    EXPECT_EQ((std::multiset(this->order.begin(), this->order.end())),
              (std::multiset<std::string>{"first", "second"}));
}

TYPED_TEST_P(NotificationCenterContract, DeliversInTheOrderOfThePosts) {
    this->note(responseName);
    for (int i = 0; i < 1000; ++i)
        this->carrier.deliver(responseName, {{"n", i}});
    ASSERT_TRUE(this->carrier.wait([this] { return this->heard.size() == 1000; }));
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(this->heard[static_cast<std::size_t>(i)].userInfo->at("n"), i);
}

TYPED_TEST_P(NotificationCenterContract, PostsNameAndUserInfoAsTheyAre) {
    Json const userInfo{{"command", "syncComment"}, {"comment", {{"seconds", 3}, {"tags", {"a", nullptr}}}}};
    this->carrier.center().post(commandName, userInfo);
    auto const& posted = this->carrier.heardElsewhere();
    ASSERT_TRUE(this->carrier.wait([&posted] { return !posted.empty(); }));
    EXPECT_EQ(posted[0].name, commandName);
    EXPECT_EQ(posted[0].userInfo, this->carrier.carried(userInfo));
}

TYPED_TEST_P(NotificationCenterContract, PostsFromInsideAnObserver) {
    this->carrier.center().observe(responseName, [this](Notification const& notification) {
        this->carrier.center().post(commandName, {{"after", notification.userInfo->at("n")}});
    });
    this->carrier.settle();
    this->carrier.deliver(responseName, {{"n", 1}});
    this->carrier.deliver(responseName, {{"n", 2}});
    auto const& posted = this->carrier.heardElsewhere();
    ASSERT_TRUE(this->carrier.wait([&posted] { return posted.size() == 2; }));
    EXPECT_EQ(posted[0].userInfo, (Json{{"after", 1}}));
    EXPECT_EQ(posted[1].userInfo, (Json{{"after", 2}}));
}

REGISTER_TYPED_TEST_SUITE_P(NotificationCenterContract, HearsWhatIsPostedElsewhere, HearsNothingOfOtherNames,
                            CallsEveryObserverOfANameAndNoOther, DeliversInTheOrderOfThePosts,
                            PostsNameAndUserInfoAsTheyAre, PostsFromInsideAnObserver);

} // namespace fcp::test
