#include "Platform/Gtk/Conversions.h"

#include "Contract/UrlParserContract.h"
#include "Platform/Gtk/GLibUrlParser.h"
#include "Platform/Gtk/GRef.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>

namespace fcp::test {

namespace {

using namespace std::string_literals;

constexpr auto rowName = [](auto const& row) { return row.param.name; };

// Values of a page, made by the engine's own interpreter inside this process.
class MessageBody : public testing::Test {
protected:
    std::optional<Json> bodyOf(std::string const& expression) {
        auto const script = "(" + expression + ")";
        auto const value = GRef<JSCValue>::adopt(
            jsc_context_evaluate(context.get(), script.c_str(), static_cast<gssize>(script.size())));
        return messageBody(value.get());
    }

    GRef<JSCContext> const context = GRef<JSCContext>::adopt(jsc_context_new());
};

struct BodyRow {
    std::string name;
    std::string expression;
    std::optional<Json> body;
};

std::ostream& operator<<(std::ostream& out, BodyRow const& row) {
    return out << row.name;
}

class MessageBodyTable : public MessageBody, public testing::WithParamInterface<BodyRow> {};

TEST_P(MessageBodyTable, IsACleanedObjectOrNothing) {
    EXPECT_EQ(bodyOf(GetParam().expression), GetParam().body);
}

INSTANTIATE_TEST_SUITE_P(
    Objects, MessageBodyTable,
    testing::Values(
        BodyRow{"AnEmptyObject", "{}", Json::object()},
        BodyRow{"EveryKindOfMember",
                "{s: 'a', n: 1.5, i: 2, t: true, f: false, z: null, a: [1, 'b'], o: {x: {}}}",
                Json{{"s", "a"},
                     {"n", 1.5},
                     {"i", 2},
                     {"t", true},
                     {"f", false},
                     {"z", nullptr},
                     {"a", {1, "b"}},
                     {"o", {{"x", Json::object()}}}}},
        BodyRow{"ABooleanIsNoNumber", "{seconds: true}", Json{{"seconds", true}}},
        BodyRow{"UndefinedMembersAreLeftOut", "{a: undefined, b: 1}", Json{{"b", 1}}},
        BodyRow{"UndefinedElementsAreNull", "{a: [undefined, , 1]}", Json{{"a", {nullptr, nullptr, 1}}}},
        BodyRow{"ANumberThatIsNotFiniteIsNull", "{a: NaN, b: [Infinity]}",
                Json{{"a", nullptr}, {"b", {nullptr}}}},
        BodyRow{"AMap", "new Map([[1, 2]])", Json::object()},
        BodyRow{"TextBeyondAscii", "{'\u00e9': '\U0001F600 \u4e2d'}", Json{{"\u00e9", "\U0001F600 \u4e2d"}}},
        BodyRow{"ANulStays", "{a: 'x\\0y'}", Json{{"a", "x\0y"s}}},
        BodyRow{"ALoneHighSurrogate", "{a: 'x\\ud83dy'}", Json{{"a", "x\ufffdy"}}},
        BodyRow{"ALoneLowSurrogate", "{a: '\\ude00'}", Json{{"a", "\ufffd"}}},
        BodyRow{"SurrogatesInTheWrongOrder", "{a: '\\ude00\\ud83d'}", Json{{"a", "\ufffd\ufffd"}}},
        BodyRow{"AWholePair", "{a: '\\ud83d\\ude00'}", Json{{"a", "\U0001F600"}}},
        BodyRow{"ALoneSurrogateInAKey", "{'k\\ud83d': 1}", Json{{"k\ufffd", 1}}},
        BodyRow{"ABackslashBeforeWhatLooksLikeOne", "{a: '\\\\ud83d'}", Json{{"a", "\\ud83d"}}},
        BodyRow{"AQuoteBeforeWhatLooksLikeABracket", "{a: '\\\"[[[{', b: 1}",
                Json{{"a", "\"[[[{"}, {"b", 1}}},
        BodyRow{"ANoncharacterStays", "{a: '\\uffff'}", Json{{"a", "\uffff"}}},
        BodyRow{"ANullPrototype", "Object.assign(Object.create(null), {a: 1})", Json{{"a", 1}}},
        BodyRow{"ALargeInteger", "{a: 9007199254740993}", Json{{"a", 9007199254740992}}},
        BodyRow{"AHugeNumber", "{a: 1e300}", Json{{"a", 1e300}}}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Nothing, MessageBodyTable,
    testing::Values(BodyRow{"AString", "'a'", {}}, BodyRow{"ANumber", "1", {}},
                    BodyRow{"ABoolean", "true", {}}, BodyRow{"Null", "null", {}},
                    BodyRow{"Undefined", "undefined", {}}, BodyRow{"ABigInt", "10n", {}},
                    BodyRow{"AnArray", "[{command: 'x'}]", {}}, BodyRow{"AFunction", "function() {}", {}},
                    BodyRow{"ADate", "new Date(0)", {}}, BodyRow{"ABoxedString", "new String('a')", {}},
                    BodyRow{"ASymbol", "Symbol('a')", {}},
                    BodyRow{"ACycle", "(() => { let a = {}; a.a = a; return a; })()", {}},
                    BodyRow{"AnInvalidDate", "new Date(NaN)", {}}),
    rowName);

TEST_F(MessageBody, KeepsSecondsAndThresholdThatAreNotFinite) {
    auto const body = bodyOf("{seconds: NaN, threshold: -Infinity, other: Infinity}").value_or(Json());
    ASSERT_TRUE(body.is_object());
    EXPECT_TRUE(std::isnan(body.at("seconds").get<double>()));
    EXPECT_EQ(body.at("threshold"), -INFINITY);
    EXPECT_EQ(body.at("other"), nullptr);
}

TEST_F(MessageBody, KeepsAnInfiniteNumberAtTheTopAlone) {
    EXPECT_EQ(bodyOf("{config: {seconds: Infinity}}"), (Json{{"config", {{"seconds", nullptr}}}}));
}

TEST_F(MessageBody, KeepsNullForSecondsThatAreNull) {
    EXPECT_EQ(bodyOf("{seconds: null, threshold: undefined}"), (Json{{"seconds", nullptr}}));
}

TEST_F(MessageBody, ReadsTheNextValueAfterACycle) {
    EXPECT_FALSE(bodyOf("(() => { let a = {}; a.a = a; return a; })()"));
    EXPECT_EQ(jsc_context_get_exception(context.get()), nullptr);
    EXPECT_TRUE(bodyOf("{a: 1}"));
}

std::string nested(std::string const& open, std::string const& close, int levels) {
    std::string text;
    for (int level = 0; level < levels; ++level)
        text += open;
    text += "1";
    for (int level = 0; level < levels; ++level)
        text += close;
    return text;
}

TEST(EngineJson, TakesFiveHundredAndTwelveLevels) {
    EXPECT_TRUE(parseEngineJson(nested("{\"a\":", "}", 512)));
    EXPECT_TRUE(parseEngineJson(nested("[", "]", 512)));
    EXPECT_TRUE(parseEngineJson(nested("{\"a\":[", "]}", 256)));
}

TEST(EngineJson, TurnsDownMoreLevels) {
    EXPECT_FALSE(parseEngineJson(nested("{\"a\":", "}", 513)));
    EXPECT_FALSE(parseEngineJson(nested("[", "]", 513)));
    EXPECT_FALSE(parseEngineJson(nested("{\"a\":[", "]}", 257)));
    EXPECT_FALSE(parseEngineJson(nested("[", "]", 1'000'000)));
}

TEST(EngineJson, CountsLevelsNotBrackets) {
    std::string text = "[";
    for (int element = 0; element < 2000; ++element)
        text += "{},[],";
    EXPECT_TRUE(parseEngineJson(text + "\"[[[\"]"));
}

TEST(EngineJson, TurnsDownWhatIsNoJson) {
    for (auto const* text :
         {"", "{", "}", "\"", "\"\\", "\"\\u", "\"\\ud", "\"\\ud83", "{\"a\":}", "nul", "1 2"})
        EXPECT_FALSE(parseEngineJson(text)) << text;
    EXPECT_FALSE(parseEngineJson("\"\xff\""));
}

TEST(EngineJson, RepairsSurrogatesInEitherCase) {
    EXPECT_EQ(parseEngineJson(R"("\uD83D \udfff \ud800")"), Json("\ufffd \ufffd \ufffd"));
    EXPECT_EQ(parseEngineJson(R"("\ud7ff \ue000")"), Json("\ud7ff \ue000"));
}

INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, UrlParserContract, GLibUrlParser);

struct UrlRow {
    std::string name;
    std::string text;
    std::optional<std::string> host;
};

std::ostream& operator<<(std::ostream& out, UrlRow const& row) {
    return out << row.name;
}

class LenientUrlTable : public testing::TestWithParam<UrlRow> {};

TEST_P(LenientUrlTable, IsReadAsTheEngineReadsIt) {
    auto const url = parseUrl(GetParam().text);
    EXPECT_EQ(url.value_or(Url{}).absoluteString, GetParam().text);
    EXPECT_EQ(url.value_or(Url{}).host, GetParam().host);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LenientUrlTable,
    testing::Values(UrlRow{"AHostInTheQuery", "https://foreign.example?@localhost", "foreign.example"},
                    UrlRow{"AHostInTheFragment", "https://foreign.example#@localhost", "foreign.example"},
                    UrlRow{"AStrayPercentSign", "http://localhost/%", "localhost"},
                    UrlRow{"AStrayPercentSignInTheQuery", "http://localhost/?q=%zz", "localhost"},
                    UrlRow{"ASpace", "http://localhost/a b", "localhost"},
                    UrlRow{"Data", "data:text/html,<p>%zz", std::nullopt}),
    rowName);

TEST(Url, OfTheEngineIsNoneWhenEmpty) {
    EXPECT_FALSE(urlFromEngine(nullptr));
    EXPECT_FALSE(urlFromEngine(""));
    EXPECT_EQ(urlFromEngine("http://localhost/").value_or(Url{}).host, "localhost");
}

TEST(Url, OfTheEngineStaysAnAddressWhenItCannotBeRead) {
    auto const url = urlFromEngine("http://localhost:99999999/").value_or(Url{"", "none"});
    EXPECT_EQ(url.absoluteString, "http://localhost:99999999/");
    EXPECT_FALSE(url.host);
}

TEST(LoadFailure, HasAnEmptyDomainForAnErrorOfNone) {
    std::string message = "gone";
    GError error{.domain = 0, .code = 7, .message = message.data()};
    EXPECT_EQ(loadFailure(error).domain, "");
    EXPECT_EQ(loadFailure(error).code, 7);
    EXPECT_EQ(loadFailure(error).message, "gone");
    error.domain = G_IO_ERROR;
    EXPECT_EQ(loadFailure(error).domain, "g-io-error-quark");
}

} // namespace

} // namespace fcp::test
