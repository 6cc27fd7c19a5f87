#include "Platform/Cocoa/CocoaNotificationCenter.h"

#include "Cocoa/NotificationCentre.h"
#include "Cocoa/RunLoop.h"

#include <gtest/gtest.h>

#include <thread>

namespace fcp::test {

namespace {

class CocoaNotificationCenterTest : public testing::Test {
protected:
    CocoaNotificationCenterTest() {
        renewNotificationCentre();
        center.observe("test.heard", [this](Notification const& notification) {
            heard.push_back(notification);
            heardOn.push_back(std::this_thread::get_id());
        });
    }

    [[nodiscard]] Notification next() {
        auto const enough = heard.size() + 1;
        EXPECT_TRUE(turnRunLoopUntil([this, enough] { return heard.size() >= enough; }));
        return heard.size() >= enough ? heard.back() : Notification{};
    }

    CocoaNotificationCenter center;
    std::vector<Notification> heard;
    std::vector<std::thread::id> heardOn;
};

TEST_F(CocoaNotificationCenterTest, PostsWithoutASenderForImmediateDelivery) {
    center.post("test.posted", {{"command", "openURL"}});
    ASSERT_EQ(posts().size(), 1U);
    EXPECT_EQ(posts()[0].name, "test.posted");
    EXPECT_FALSE(posts()[0].hasObject);
    EXPECT_TRUE(posts()[0].isImmediate);
    EXPECT_TRUE(posts()[0].isPropertyList);
}

TEST_F(CocoaNotificationCenterTest, LeavesNullOutAtEveryDepth) {
    center.post("test.heard", {{"a", nullptr}, {"b", {1, nullptr, {{"c", nullptr}}, {nullptr}}}});
    EXPECT_EQ(next().userInfo, (Json{{"b", {1, Json::object(), Json::array()}}}));
    EXPECT_TRUE(posts().at(0).isPropertyList);
}

TEST_F(CocoaNotificationCenterTest, CarriesBooleansIntegersAndOtherNumbersAsTheyAre) {
    Json const userInfo{{"flag", true}, {"zero", 0},   {"one", 1},
                        {"whole", 2.0}, {"half", 0.5}, {"low", std::numeric_limits<std::int64_t>::min()}};
    center.post("test.heard", userInfo);
    auto const carried = next().userInfo.value_or(Json());
    EXPECT_EQ(carried, userInfo);
    EXPECT_TRUE(carried.at("flag").is_boolean());
    EXPECT_TRUE(carried.at("one").is_number_integer());
    EXPECT_TRUE(carried.at("whole").is_number_float());
}

TEST_F(CocoaNotificationCenterTest, PostsNoUserInfoThatIsNoObject) {
    center.post("test.posted", Json::array({1}));
    ASSERT_EQ(posts().size(), 1U);
    EXPECT_FALSE(posts()[0].hasUserInfo);
}

TEST_F(CocoaNotificationCenterTest, ObservesEverySender) {
    EXPECT_EQ(observersOfAnySender(), 1);
    postWithoutUserInfo("test.heard", "somebody");
    EXPECT_EQ(next().object, "somebody");
}

TEST_F(CocoaNotificationCenterTest, HearsOfNoUserInfoWhereThereIsNone) {
    postWithoutUserInfo("test.heard", "");
    EXPECT_EQ(next().userInfo, std::nullopt);
}

TEST_F(CocoaNotificationCenterTest, ReadsWhatItCanOfAnOddUserInfo) {
    postOddUserInfo("test.heard");
    auto const notification = next();
    EXPECT_EQ(notification.object, std::nullopt);
    EXPECT_EQ(notification.userInfo,
              (Json{{"requestId", "req-1-000000"}, {"result", nullptr}, {"list", {nullptr, nullptr, 1}}}));
}

TEST_F(CocoaNotificationCenterTest, CallsObserversOnTheMainThreadAndNeverInsideThePost) {
    std::thread([this] {
        Pool const pool;
        center.post("test.heard", Json::object());
    }).join();
    EXPECT_TRUE(heard.empty());
    EXPECT_EQ(next().userInfo, Json::object());
    ASSERT_EQ(heardOn.size(), 1U);
    EXPECT_EQ(heardOn[0], std::this_thread::get_id());
}

} // namespace

} // namespace fcp::test
