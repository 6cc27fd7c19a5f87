#include "FcpExtension/EntranceRules.h"

#include <gtest/gtest.h>

#include <cmath>

namespace fcp::test {

namespace {

Json memberOf(std::string const& name, std::optional<Json> value, ObjectPlace place) {
    auto object = Json::object();
    addMember(object, name, std::move(value), place);
    return object;
}

TEST(EntranceRules, KeepWhatHasAJsonForm) {
    for (auto const& value :
         {Json(), Json(true), Json(1), Json(1.5), Json("a"), Json::array({1}), Json{{"b", 2}}}) {
        EXPECT_EQ(memberOf("a", value, ObjectPlace::Nested), (Json{{"a", value}}));
        auto array = Json::array();
        addElement(array, value);
        EXPECT_EQ(array.at(0), value);
    }
}

TEST(EntranceRules, LeaveOutAMemberWithoutAJsonForm) {
    EXPECT_EQ(memberOf("a", std::nullopt, ObjectPlace::Outermost), Json::object());
    EXPECT_EQ(memberOf("seconds", std::nullopt, ObjectPlace::Outermost), Json::object());
}

TEST(EntranceRules, ReadAnElementWithoutAJsonFormAsNull) {
    auto array = Json::array({1});
    addElement(array, std::nullopt);
    addElement(array, 2);
    EXPECT_EQ(array, (Json{1, nullptr, 2}));
}

TEST(EntranceRules, TakeTheFirstOfEqualNames) {
    auto object = memberOf("a", 1, ObjectPlace::Outermost);
    addMember(object, "a", 2, ObjectPlace::Outermost);
    EXPECT_EQ(object, (Json{{"a", 1}}));
}

TEST(EntranceRules, KeepNumbersThatAreNotFiniteAsOutermostTimesOnly) {
    for (auto const* name : {"seconds", "threshold"}) {
        EXPECT_EQ(memberOf(name, INFINITY, ObjectPlace::Outermost).at(name), INFINITY);
        EXPECT_TRUE(std::isnan(memberOf(name, NAN, ObjectPlace::Outermost).at(name).get<double>()));
        EXPECT_EQ(memberOf(name, -INFINITY, ObjectPlace::Nested).at(name), nullptr);
    }
    EXPECT_EQ(memberOf("start", INFINITY, ObjectPlace::Outermost).at("start"), nullptr);
    EXPECT_EQ(memberOf("Seconds", NAN, ObjectPlace::Outermost).at("Seconds"), nullptr);
    auto array = Json::array();
    addElement(array, NAN);
    EXPECT_EQ(array, Json::array({nullptr}));
}

TEST(EntranceRules, TakeNoTextWithANulForAnAddress) {
    EXPECT_TRUE(mayBeAddress("http://localhost/"));
    EXPECT_FALSE(mayBeAddress(std::string("http://localhost\0.example/", 26)));
    EXPECT_FALSE(mayBeAddress(std::string(1, '\0')));
}

TEST(EntranceRules, KeepTheTextOfAnAddressAndReadAnEmptyHostAsNone) {
    auto const page = readAddress("http://LOCALHOST/%", "LOCALHOST");
    EXPECT_EQ(page.absoluteString, "http://LOCALHOST/%");
    EXPECT_EQ(page.host, "LOCALHOST");
    EXPECT_EQ(readAddress("file:///tmp", "").absoluteString, "file:///tmp");
    EXPECT_EQ(readAddress("file:///tmp", "").host, std::nullopt);
}

} // namespace

} // namespace fcp::test
