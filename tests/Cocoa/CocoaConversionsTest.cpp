#include "Cocoa/FoundationValues.h"
#include "FcpExtension/JsonWriter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <set>

namespace fcp::test {

namespace {

using namespace std::string_literals;

constexpr auto rowName = [](auto const& row) {
    std::string name;
    for (bool upper = true; char const c : row.param.name) {
        if (c != ' ')
            name += upper ? static_cast<char>(std::toupper(c)) : c;
        upper = c == ' ';
    }
    return name;
};

struct Row {
    std::string name;
    std::optional<Json> body;
    std::optional<Json> userInfo = body; // reads like a body, but for the numbers
};

std::ostream& operator<<(std::ostream& out, Row const& row) {
    return out << row.name;
}

// Equal text too: a boolean is no number, an integer no real one, and what is not finite no null.
std::string text(std::optional<Json> const& value) {
    return value ? writeJson(*value).value_or("not finite: " + value->dump()) : "none";
}

class ValueTable : public testing::TestWithParam<Row> {};

TEST_P(ValueTable, IsACleanedBodyOrNothing) {
    EXPECT_EQ(text(bodyOf(GetParam().name)), text(GetParam().body));
}

TEST_P(ValueTable, IsAUserInfoOrNothing) {
    EXPECT_EQ(text(userInfoOf(GetParam().name)), text(GetParam().userInfo));
}

auto const rows = std::vector<Row>{
    {"booleans", Json{{"t", true}, {"f", false}}},
    {"zero and one", Json{{"i", 1}, {"c", 0}}},
    {"integers", Json{{"low", INT64_MIN}, {"high", UINT64_MAX}}},
    {"a whole real", Json{{"a", 2}, {"b", 0}, {"c", 1000000000000000}},
     Json{{"a", 2.0}, {"b", -0.0}, {"c", 1e15}}},
    {"a large whole real", Json{{"a", 9223372036854775808U}}, Json{{"a", 9223372036854775808.0}}},
    {"a huge real", Json{{"a", 1e300}, {"b", -1e300}, {"c", 18446744073709551616.0}}},
    {"reals", Json{{"a", 0.5}, {"b", 0.25}}},
    {"not finite", Json{{"a", nullptr}, {"b", {nullptr, nullptr}}}},
    {"not finite times", Json{{"seconds", INFINITY}, {"threshold", -INFINITY}}},
    {"not finite times further in", Json{{"config", {{"seconds", nullptr}}}}},
    {"a date", Json{{"a", "1970-01-01T00:00:00.000Z"}, {"b", "2023-11-14T22:13:20.123Z"}}},
    {"a date before 1970", Json{{"a", "1969-12-31T23:59:59.500Z"}, {"b", "0001-01-01T00:00:00.000Z"}}},
    {"a date far away", Json{{"a", "+010000-01-01T00:00:00.000Z"}, {"b", "-000001-12-31T23:59:59.000Z"}}},
    {"a date that is none", Json{{"a", nullptr}, {"b", nullptr}}},
    {"nothing in it", Json::object()},
    {"null", Json{{"a", nullptr}, {"b", {nullptr, "x"}}}},
    {"mixed", Json{{"a", {1, "b", {true, Json::object()}, {{"c", Json::array()}}}}}},
    {"keys that are no text", Json{{"a", 1}}},
    {"no JSON form", Json{{"a", {nullptr, 1}}}},
    {"lone surrogates", Json{{"k\ufffd", "x\ufffdy"}}},
    {"a text", {}},
    {"a number", {}},
    {"a boolean", {}},
    {"null alone", {}},
    {"an array", {}},
    {"a date alone", {}},
};

INSTANTIATE_TEST_SUITE_P(Rows, ValueTable, testing::ValuesIn(rows), rowName);

TEST(ValueTableItself, HasEveryValueThatCanBeMade) {
    std::set<std::string> tabled;
    for (auto const& row : rows)
        tabled.insert(row.name);
    auto const made = valueNames();
    EXPECT_EQ(tabled, std::set(made.begin(), made.end()));
}

TEST(MessageBody, KeepsTimesThatAreNotFinite) {
    auto const body = bodyOf("not finite times").value_or(Json());
    ASSERT_TRUE(body.is_object());
    EXPECT_EQ(body.at("seconds"), INFINITY);
    EXPECT_EQ(body.at("threshold"), -INFINITY);
}

TEST(MessageBody, TakesFiveHundredAndTwelveLevels) {
    for (auto const nesting : {Nesting::Dictionaries, Nesting::Arrays, Nesting::Both}) {
        EXPECT_TRUE(nestedBody(nesting, 512));
        EXPECT_TRUE(nestedUserInfo(nesting, 512));
    }
}

TEST(MessageBody, TurnsDownMoreLevels) {
    for (auto const nesting : {Nesting::Dictionaries, Nesting::Arrays, Nesting::Both}) {
        EXPECT_FALSE(nestedBody(nesting, 513));
        EXPECT_FALSE(nestedUserInfo(nesting, 513));
        EXPECT_FALSE(nestedBody(nesting, 10'000));
    }
}

TEST(MessageBody, TurnsDownACycle) {
    EXPECT_FALSE(cyclicBody());
}

TEST(FoundationText, GoesThereAndBack) {
    for (auto const& text : {""s, "a"s, "x\0y"s, "Łódź \U0001F600 \u4e2d"s, "\uffff"s, "\u2028"s})
        EXPECT_EQ(throughString(text), text);
}

TEST(FoundationText, ReplacesBytesThatAreNotUtf8) {
    EXPECT_EQ(throughString("a\xff\"b\\"), "a\ufffd\"b\\");
    EXPECT_EQ(throughString("\xc0\x80"), "\ufffd\ufffd");
}

TEST(FoundationText, ReplacesLoneSurrogatesOnly) {
    EXPECT_EQ(fromUnits(u"x\xd83dy"), "x\ufffdy");
    EXPECT_EQ(fromUnits(u"\xd83d"), "\ufffd");
    EXPECT_EQ(fromUnits(u"\xde00\xd83d"), "\ufffd\ufffd");
    EXPECT_EQ(fromUnits(u"\xd83d\xd83d\xde00\xde00"), "\ufffd\U0001F600\ufffd");
    EXPECT_EQ(fromUnits(u"\xd7ff\xe000"), "\ud7ff\ue000");
    EXPECT_EQ(fromUnits(u"a\xd83d\x0000z"s), "a\ufffd\0z"s);
}

TEST(FoundationText, OfNilIsNone) {
    EXPECT_TRUE(readsNilAsNone());
}

TEST(UserInfo, GoesThereAndBackWithoutNull) {
    Json const userInfo{{"t", true}, {"i", -3},  {"u", UINT64_MAX},
                        {"d", 2.0},  {"s", "x"}, {"o", {{"a", {1}}}}};
    auto carried = userInfo;
    carried["n"] = nullptr;
    carried["a"] = {nullptr, {{"b", nullptr}}, 1};
    auto expected = userInfo;
    expected["a"] = {Json::object(), 1};
    EXPECT_EQ(text(throughUserInfo(carried)), text(expected));
}

TEST(UserInfo, OfWhatIsNoObjectIsNone) {
    for (auto const& value : {Json(), Json(1), Json("a"), Json::array({1})})
        EXPECT_FALSE(throughUserInfo(value));
}

} // namespace

} // namespace fcp::test
