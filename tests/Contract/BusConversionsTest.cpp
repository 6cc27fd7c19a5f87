#include "Platform/Gtk/BusConversions.h"
#include "Contract/RawBusPeer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <ranges>
#include <string>
#include <utility>
#include <vector>

using fcp::Json;
using fcp::test::RawBusPeer;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

class BusConversions : public testing::Test {
protected:
    // What a reader gets of what was written; none when it must not be sent.
    [[nodiscard]] std::optional<Json> throughTheBus(Json const& userInfo) const {
        auto const message = peer.makeSignal();
        if (!fcp::appendUserInfo(*message, userInfo))
            return {};
        RawBusPeer::seal(*message);
        return fcp::readUserInfo(*message);
    }

    // The signature in the variant that `value` is written as.
    [[nodiscard]] std::string wireType(Json const& value) const {
        auto const message = peer.makeSignal();
        EXPECT_TRUE(fcp::appendUserInfo(*message, {{"k", value}}));
        RawBusPeer::seal(*message);
        EXPECT_GT(sd_bus_message_enter_container(message.get(), 'a', "{sv}"), 0);
        EXPECT_GT(sd_bus_message_enter_container(message.get(), 'e', "sv"), 0);
        EXPECT_GE(sd_bus_message_skip(message.get(), "s"), 0);
        char type = 0;
        char const* contents = nullptr;
        EXPECT_GT(sd_bus_message_peek_type(message.get(), &type, &contents), 0);
        EXPECT_EQ(type, 'v');
        return contents;
    }

    // What is read of a message with the signature and values given as for sd_bus_message_append.
    template <typename... Values>
    [[nodiscard]] std::optional<Json> reading(char const* signature, Values... values) const {
        auto const message = peer.makeSignal();
        EXPECT_GE(sd_bus_message_append(message.get(), signature, values...), 0);
        RawBusPeer::seal(*message);
        return fcp::readUserInfo(*message);
    }

    RawBusPeer peer;
};

// A value with the given path cost below the outermost dictionary, in which "a" and "d" choose the levels.
Json nested(std::string const& levels) {
    Json value = "leaf";
    for (auto const level : std::views::reverse(levels))
        value = level == 'a' ? Json::array({value}) : Json{{"k", value}};
    return value;
}

std::string repeated(int count, char const* text) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

TEST_F(BusConversions, WritesEveryJsonTypeAsItsOwnWireType) {
    std::vector<std::pair<Json, std::string>> const rows{
        {true, "b"},
        {false, "b"},
        {0, "x"},
        {-1, "x"},
        {7U, "x"},
        {std::numeric_limits<std::int64_t>::min(), "x"},
        {static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()), "x"},
        {std::numeric_limits<std::uint64_t>::max(), "t"},
        {1.0, "d"},
        {12.5, "d"},
        {infinity, "d"},
        {notANumber, "d"},
        {"text", "s"},
        {"", "s"},
        {nullptr, "g"},
        {Json::array(), "av"},
        {{1, 2, 3}, "av"},
        {{true, "mixed", nullptr}, "av"},
        {Json::object(), "a{sv}"},
        {{{"a", 1}}, "a{sv}"},
    };
    for (auto const& [value, type] : rows)
        EXPECT_EQ(wireType(value), type) << value;
}

TEST_F(BusConversions, ReadsBackWhatItWrote) {
    Json const userInfo{
        {"command", "syncAllComments"},
        {"comments",
         {{{"id", "c1"}, {"seconds", 12.5}, {"resolved", false}, {"author", {{"name", "Łucja 日本 🎬"}}}},
          {{"id", "c2"}, {"replies", Json::array()}, {"drawing", nullptr}, {"extra", Json::object()}}}},
        {"largest", std::numeric_limits<std::uint64_t>::max()},
        {"least", std::numeric_limits<std::int64_t>::min()},
        {"list", {1, -2, 2.5, true, "x", nullptr, {1, {2, {3}}}}},
        {"", "an empty key"},
        {"tab\tand\nline", "control characters \x01\x1f\x7f"},
    };
    EXPECT_EQ(throughTheBus(userInfo), userInfo);
    EXPECT_EQ(throughTheBus(Json::object()), Json::object());
}

TEST_F(BusConversions, KeepsIntegersRealsAndBooleansApart) {
    auto const read = throughTheBus({{"one", 1}, {"real", 1.0}, {"yes", true}, {"minusZero", -0.0}}).value();
    EXPECT_TRUE(read["one"].is_number_integer());
    EXPECT_TRUE(read["real"].is_number_float());
    EXPECT_TRUE(read["yes"].is_boolean());
    EXPECT_TRUE(std::signbit(read["minusZero"].get<double>()));
}

TEST_F(BusConversions, KeepsNumbersThatAreNotFiniteOnlyAsTimesOfTheRequest) {
    auto const read = throughTheBus({{"seconds", notANumber},
                                     {"threshold", -infinity},
                                     {"other", infinity},
                                     {"list", {1.5, notANumber}},
                                     {"result", {{"seconds", notANumber}}}})
                          .value();
    EXPECT_TRUE(std::isnan(read["seconds"].get<double>()));
    EXPECT_EQ(read["threshold"], -infinity);
    EXPECT_EQ(read["other"], nullptr);
    EXPECT_EQ(read["list"], Json({1.5, nullptr}));
    EXPECT_EQ(read["result"], (Json{{"seconds", nullptr}}));
}

TEST_F(BusConversions, ReplacesWhatTheBusRefusesInAText) {
    std::vector<std::pair<std::string, std::string>> const rows{
        {"a\xFFz", "a\uFFFDz"}, // no UTF-8 at all
        {"\xC3", "\uFFFD"}, // cut short
        {"\xC0\x80", "\uFFFD\uFFFD"}, // an overlong NUL
        {"\xED\xA0\x80!", "\uFFFD\uFFFD\uFFFD!"}, // a lone surrogate
        {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"}, // above U+10FFFF
        {std::string("a\0b\0", 4), "a\uFFFDb\uFFFD"}, // NUL would end the text
        {"\uFFFE\uFFFF \uFDD0\uFDEF", "\uFFFD\uFFFD \uFFFD\uFFFD"},
        {"\U0001FFFE\U0010FFFF", "\uFFFD\uFFFD"},
        {"\uFDCF\uFDF0\uFFFD\uE000\U0010FFFD", "\uFDCF\uFDF0\uFFFD\uE000\U0010FFFD"}, // all good
    };
    for (auto const& [text, expected] : rows) {
        EXPECT_EQ(throughTheBus({{"k", text}}), (Json{{"k", expected}})) << expected;
        EXPECT_EQ(throughTheBus({{text, 1}}), (Json{{expected, 1}})) << expected;
    }
}

TEST_F(BusConversions, LeavesOutAKeyThatItsRepairMakesEqualToAnother) {
    EXPECT_EQ(throughTheBus({{"\xFE", 1}, {"\xFF", 2}}), (Json{{"\uFFFD", 1}}));
    EXPECT_EQ(throughTheBus({{"\xFE", 1}, {"\uFFFD", 2}}), (Json{{"\uFFFD", 2}}));
    auto const message = peer.makeSignal();
    ASSERT_TRUE(fcp::appendUserInfo(*message, {{"\xFE", 1}, {"\xFF", 2}}));
    RawBusPeer::seal(*message);
    ASSERT_GT(sd_bus_message_enter_container(message.get(), 'a', "{sv}"), 0);
    EXPECT_GE(sd_bus_message_skip(message.get(), "{sv}"), 0);
    EXPECT_GT(sd_bus_message_at_end(message.get(), 0), 0) << "the second one was sent along";
}

TEST_F(BusConversions, WritesNothingButAnObject) {
    for (auto const& value : {Json(), Json(1), Json("text"), Json::array(), Json(true)})
        EXPECT_EQ(throughTheBus(value), std::nullopt) << value;
}

TEST_F(BusConversions, AllowsSixtyFourLevelsOnAPathAndNoMore) {
    // Three levels belong to the outermost dictionary.
    std::vector<std::string> const fit{
        repeated(20, "d"), repeated(19, "d") + "aa", repeated(30, "a"), "d" + repeated(29, "a"),
        repeated(12, "da") // 63
    };
    std::vector<std::string> const tooDeep{repeated(21, "d"), repeated(20, "d") + "a", repeated(31, "a"),
                                           "a" + repeated(20, "d"), repeated(12, "da") + "a"};
    for (auto const& levels : fit) {
        Json const userInfo{{"k", nested(levels)}};
        EXPECT_EQ(throughTheBus(userInfo), userInfo) << levels;
    }
    for (auto const& levels : tooDeep)
        EXPECT_EQ(throughTheBus({{"k", nested(levels)}}), std::nullopt) << levels;
}

TEST_F(BusConversions, CountsEveryPathForItself) {
    Json wide = Json::object();
    for (int i = 0; i < 40; ++i)
        wide[std::to_string(i)] = nested("dadad");
    EXPECT_EQ(throughTheBus(wide), wide);
}

TEST_F(BusConversions, RefusesNestingWithoutEnd) {
    EXPECT_EQ(throughTheBus({{"k", nested(repeated(500, "a"))}}), std::nullopt);
}

TEST_F(BusConversions, AllowsABodyOfSixteenMebibytesAndNoMore) {
    // The array's length and padding; then key, signature and text, with their own lengths, padding and ends.
    std::string const text(fcp::maximumBodySize - (4 + 4 + (4 + 1 + 1) + 3 + 3 + (4 + 1)), 'x');
    EXPECT_EQ(fcp::appendUserInfo(*peer.makeSignal(), {{"k", text}}), fcp::maximumBodySize);
    EXPECT_EQ(fcp::appendUserInfo(*peer.makeSignal(), {{"k", text + "x"}}), std::nullopt);
    std::string const key(fcp::maximumBodySize - (4 + 4 + (4 + 1) + 3 + (4 + 3 + 1)), 'x');
    EXPECT_EQ(fcp::appendUserInfo(*peer.makeSignal(), {{key, "xyz"}}), fcp::maximumBodySize);
    EXPECT_EQ(fcp::appendUserInfo(*peer.makeSignal(), {{key + "x", "xyz"}}), std::nullopt);
}

TEST_F(BusConversions, CountsTextsAsTheyAreAfterTheirRepair) {
    std::string const text(fcp::maximumBodySize / 3, '\xFF');
    EXPECT_EQ(fcp::appendUserInfo(*peer.makeSignal(), {{"k", text}}), std::nullopt);
    EXPECT_TRUE(fcp::appendUserInfo(*peer.makeSignal(), {{"k", text.substr(8)}}));
}

TEST_F(BusConversions, RefusesManySmallValuesThatTogetherAreTooLarge) {
    Json const list = std::vector<int>(1'050'000, 1);
    EXPECT_EQ(throughTheBus({{"k", list}}), std::nullopt);
}

TEST_F(BusConversions, ReadsEveryNumberTypeAsANumber) {
    EXPECT_EQ(reading("a{sv}", 8, "y", "y", 255, "n", "n", -32768, "q", "q", 65535, "i", "i", -5, "u", "u",
                      4000000000U, "x", "x", std::int64_t{-1} << 62, "t", "t", ~std::uint64_t{0}, "d", "d",
                      0.5),
              (Json{{"y", 255},
                    {"n", -32768},
                    {"q", 65535},
                    {"i", -5},
                    {"u", 4000000000U},
                    {"x", std::int64_t{-1} << 62},
                    {"t", ~std::uint64_t{0}},
                    {"d", 0.5}}));
}

TEST_F(BusConversions, TakesOnlyABooleanForABoolean) {
    auto const read = reading("a{sv}", 3, "real", "b", 1, "one", "i", 1, "zero", "y", 0).value();
    EXPECT_TRUE(read["real"].is_boolean());
    EXPECT_TRUE(read["one"].is_number());
    EXPECT_TRUE(read["zero"].is_number());
}

TEST_F(BusConversions, ReadsArraysOfAnyJsonType) {
    EXPECT_EQ(reading("a{sv}", 7, "av", "av", 3, "s", "x", "i", 1, "b", 0, "as", "as", 2, "a", "b", "ai",
                      "ai", 1, -7, "ad", "ad", 2, 0.5, notANumber, "ab", "ab", 2, 1, 0, "none", "ax", 0,
                      "aas", "aas", 2, 1, "p", 0),
              (Json{{"av", {"x", 1, false}},
                    {"as", {"a", "b"}},
                    {"ai", {-7}},
                    {"ad", {0.5, nullptr}},
                    {"ab", {true, false}},
                    {"none", Json::array()},
                    {"aas", {{"p"}, Json::array()}}}));
}

TEST_F(BusConversions, ReadsDictionariesWithTextKeys) {
    EXPECT_EQ(reading("a{sv}", 4, "v", "a{sv}", 1, "k", "u", 1, "s", "a{ss}", 1, "k", "t", "d", "a{sa{sd}}",
                      1, "in", 1, "k", 1.5, "list", "aa{sv}", 2, 1, "k", "s", "v", 0),
              (Json{{"v", {{"k", 1}}},
                    {"s", {{"k", "t"}}},
                    {"d", {{"in", {{"k", 1.5}}}}},
                    {"list", {{{"k", "v"}}, Json::object()}}}));
}

TEST_F(BusConversions, TakesOnlyTheEmptySignatureForNull) {
    EXPECT_EQ(reading("a{sv}", 2, "null", "g", "", "type", "g", "a{sv}"), (Json{{"null", nullptr}}));
}

TEST_F(BusConversions, LeavesOutMembersWithoutAJsonForm) {
    EXPECT_EQ(reading("a{sv}", 10, "before", "i", 1, "o", "o", "/a", "tuple", "(is)", 1, "x", "intKeys",
                      "a{is}", 1, 1, "x", "paths", "ao", 1, "/a", "tuples", "a(i)", 1, 1, "pathValues",
                      "a{so}", 1, "k", "/a", "variant", "v", "s", "x", "signatures", "as", 0, "after", "i",
                      2),
              (Json{{"before", 1}, {"signatures", Json::array()}, {"after", 2}}));
    EXPECT_EQ(reading("a{sv}", 2, "handle", "h", 0, "after", "i", 2), (Json{{"after", 2}}));
}

TEST_F(BusConversions, ReadsAnElementWithoutAJsonFormAsNullSoThatTheOthersKeepTheirPlaces) {
    EXPECT_EQ(reading("a{sv}", 1, "k", "av", 4, "i", 1, "o", "/a", "g", "ai", "i", 2),
              (Json{{"k", {1, nullptr, nullptr, 2}}}));
}

TEST_F(BusConversions, TakesTheFirstOfEqualKeys) {
    EXPECT_EQ(reading("a{sv}", 3, "k", "i", 1, "k", "i", 2, "k", "s", "x"), (Json{{"k", 1}}));
    EXPECT_EQ(reading("a{sv}", 2, "k", "o", "/a", "k", "i", 2), (Json{{"k", 2}})) << "a wrong type is absent";
}

TEST_F(BusConversions, ReadsNoOtherSignature) {
    EXPECT_EQ(reading(""), std::nullopt);
    EXPECT_EQ(reading("s", "text"), std::nullopt);
    EXPECT_EQ(reading("a{ss}", 1, "k", "v"), std::nullopt);
    EXPECT_EQ(reading("(a{sv})", 0), std::nullopt);
    EXPECT_EQ(reading("a{sv}s", 0, "more"), std::nullopt);
    EXPECT_EQ(reading("sa{sv}", "first", 0), std::nullopt);
    EXPECT_EQ(reading("v", "a{sv}", 0), std::nullopt);
    EXPECT_EQ(reading("a{sv}", 0), Json::object());
}

TEST_F(BusConversions, LeavesOutWhatIsNestedDeeperThanItWouldSend) {
    auto const message = peer.makeSignal();
    auto* const m = message.get();
    ASSERT_GE(sd_bus_message_open_container(m, 'a', "{sv}"), 0);
    ASSERT_GE(sd_bus_message_append(m, "{sv}", "before", "i", 1), 0);
    ASSERT_GE(sd_bus_message_open_container(m, 'e', "sv"), 0);
    ASSERT_GE(sd_bus_message_append(m, "s", "deep"), 0);
    constexpr int levels = 40;
    for (int i = 0; i < levels; ++i) {
        ASSERT_GE(sd_bus_message_open_container(m, 'v', "av"), 0);
        ASSERT_GE(sd_bus_message_open_container(m, 'a', "v"), 0);
    }
    for (int i = 0; i < 2 * levels + 1; ++i)
        ASSERT_GE(sd_bus_message_close_container(m), 0);
    ASSERT_GE(sd_bus_message_append(m, "{sv}", "after", "i", 2), 0);
    ASSERT_GE(sd_bus_message_close_container(m), 0);
    RawBusPeer::seal(*m);
    Json innermost = nullptr;
    for (int i = 0; i < 30; ++i)
        innermost = Json::array({innermost});
    EXPECT_EQ(fcp::readUserInfo(*m), (Json{{"before", 1}, {"deep", innermost}, {"after", 2}}));
}

TEST_F(BusConversions, ReadsNothingOfAMessageWithMoreValuesThanItCouldHaveSent) {
    auto const readBytes = [this](std::size_t count) {
        auto const message = peer.makeSignal();
        EXPECT_GE(sd_bus_message_open_container(message.get(), 'a', "{sv}"), 0);
        EXPECT_GE(sd_bus_message_open_container(message.get(), 'e', "sv"), 0);
        EXPECT_GE(sd_bus_message_append(message.get(), "s", "k"), 0);
        EXPECT_GE(sd_bus_message_open_container(message.get(), 'v', "ay"), 0);
        std::vector<unsigned char> const bytes(count, 1);
        EXPECT_GE(sd_bus_message_append_array(message.get(), 'y', bytes.data(), bytes.size()), 0);
        for (int i = 0; i < 3; ++i)
            EXPECT_GE(sd_bus_message_close_container(message.get()), 0);
        RawBusPeer::seal(*message);
        return fcp::readUserInfo(*message);
    };
    auto const limit = fcp::maximumBodySize / 4;
    EXPECT_EQ(readBytes(limit - 1).value().at("k").size(), limit - 1) << "the array itself is a value too";
    EXPECT_EQ(readBytes(limit), std::nullopt);
}

// sd-bus writes through this door without a check, as another library might.
TEST_F(BusConversions, ReadsNothingOfAMessageWithATextThatTheBusRefuses) {
    for (std::string const text : {"\xFF", "\uFFFF", "\xED\xA0\x80"}) {
        auto const message = peer.makeSignal();
        auto* const m = message.get();
        ASSERT_GE(sd_bus_message_open_container(m, 'a', "{sv}"), 0);
        ASSERT_GE(sd_bus_message_append(m, "{sv}", "good", "i", 1), 0);
        ASSERT_GE(sd_bus_message_open_container(m, 'e', "sv"), 0);
        ASSERT_GE(sd_bus_message_append(m, "s", "k"), 0);
        ASSERT_GE(sd_bus_message_open_container(m, 'v', "s"), 0);
        char* space = nullptr;
        ASSERT_GE(sd_bus_message_append_string_space(m, text.size(), &space), 0);
        text.copy(space, text.size());
        for (int i = 0; i < 3; ++i)
            ASSERT_GE(sd_bus_message_close_container(m), 0);
        RawBusPeer::seal(*m);
        EXPECT_EQ(fcp::readUserInfo(*m), std::nullopt);
    }
}

} // namespace
