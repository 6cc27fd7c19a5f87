#include "Contract/WebFixture.h"

#include <cmath>
#include <ostream>
#include <string>

namespace fcp::test {

namespace {

using namespace std::string_literals;

class GtkMessages : public WebFixture {
protected:
    void SetUp() override {
        load(server.url("/ok"));
        ASSERT_TRUE(waitForReports(1));
    }

    // Runs the script, which posts with post(value), then posts an end mark. Gives what arrived before it.
    std::vector<Json> received(std::string const& script) {
        auto const before = handler->bodies.size();
        EXPECT_EQ(run("{ const post = value => { try { webkit.messageHandlers.fcpBridge.postMessage(value) } "
                      "catch (e) {} }; " +
                      script + "; post({end: true}) } undefined"),
                  "");
        auto const ended = [&] {
            return handler->bodies.size() > before && handler->bodies.back() == Json{{"end", true}};
        };
        EXPECT_TRUE(waitFor(ended));
        return {handler->bodies.begin() + static_cast<std::ptrdiff_t>(before), handler->bodies.end() - 1};
    }

    std::vector<Json> posted(std::string const& expression) { return received("post(" + expression + ")"); }
};

struct Row {
    std::string name;
    std::string expression;
    std::vector<Json> arrives;
};

std::ostream& operator<<(std::ostream& out, Row const& row) {
    return out << row.name;
}

constexpr auto rowName = [](auto const& row) { return row.param.name; };

class GtkMessagesTable : public GtkMessages, public testing::WithParamInterface<Row> {};

TEST_P(GtkMessagesTable, ArriveCleanedOrNotAtAll) {
    EXPECT_EQ(posted(GetParam().expression), GetParam().arrives);
}

INSTANTIATE_TEST_SUITE_P(
    Objects, GtkMessagesTable,
    testing::Values(
        Row{"APlainObject",
            "{command: 'a', n: 1.5, t: true, z: null, l: [1, {}], o: {x: 'y'}}",
            {{{"command", "a"},
              {"n", 1.5},
              {"t", true},
              {"z", nullptr},
              {"l", {1, Json::object()}},
              {"o", {{"x", "y"}}}}}},
        Row{"UndefinedAndBigIntMembers", "{a: undefined, b: 1n, c: 1}", {{{"c", 1}}}},
        Row{"ASparseArray", "{a: [1, , 2]}", {{{"a", {1, nullptr, 2}}}}},
        Row{"NumbersThatAreNotFinite", "{a: NaN, b: -Infinity}", {{{"a", nullptr}, {"b", nullptr}}}},
        Row{"AnIntegerBeyondTheMantissa", "{a: 9007199254740993}", {{{"a", 9007199254740992}}}},
        Row{"ABooleanForSeconds", "{seconds: true}", {{{"seconds", true}}}},
        Row{"AMap", "new Map([['a', 1]])", {Json::object()}}, Row{"ASet", "new Set([1])", {Json::object()}},
        Row{"AnExpression", "/a/", {Json::object()}},
        Row{"AnArrayBuffer", "new ArrayBuffer(3)", {Json::object()}},
        Row{"ATypedArray", "new Uint8Array([7])", {{{"0", 7}}}},
        Row{"ABoxedNumber", "new Number(3)", {Json::object()}},
        Row{"ABoxedString", "new String('a')", {{{"0", "a"}}}},
        Row{"ADateInside", "{a: new Date(0)}", {{{"a", "1970-01-01T00:00:00.000Z"}}}},
        Row{"AnInvalidDateInside", "{a: new Date(NaN)}", {{{"a", nullptr}}}},
        Row{"AnInstance", "new (class { a = 1; get b() { return 2 } })", {{{"a", 1}}}},
        Row{"ANullPrototype", "Object.assign(Object.create(null), {a: 1})", {{{"a", 1}}}},
        Row{"AGetter", "{get a() { return 5 }}", {{{"a", 5}}}},
        Row{"ANul", "{'k\\0': 'x\\0y'}", {{{"k\0"s, "x\0y"s}}}},
        Row{"LoneSurrogates",
            "{a: 'x\\ud83d', 'k\\ude00': '\\ude00\\ud83d'}",
            {{{"a", "x\ufffd"}, {"k\ufffd", "\ufffd\ufffd"}}}},
        Row{"AnEscapeThatIsText", "{a: '\\\\ud83d'}", {{{"a", "\\ud83d"}}}},
        Row{"APair", "{a: '\\ud83d\\ude00'}", {{{"a", "\U0001F600"}}}},
        Row{"ASecondArgumentIsIgnored", "{a: 1}, {b: 2}", {{{"a", 1}}}}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Nothing, GtkMessagesTable,
    testing::Values(Row{"AString", "'command'", {}}, Row{"ANumber", "1", {}}, Row{"ABoolean", "true", {}},
                    Row{"Null", "null", {}}, Row{"Undefined", "undefined", {}}, Row{"ABigInt", "1n", {}},
                    Row{"NoArgument", "", {}}, Row{"AnArray", "[{command: 'a'}]", {}},
                    Row{"ADate", "new Date(0)", {}}, Row{"AFunction", "function() {}", {}},
                    Row{"AFunctionInside", "{a: () => 1}", {}}, Row{"ASymbol", "Symbol('a')", {}},
                    Row{"ANode", "document.body", {}}, Row{"TheWindow", "window", {}},
                    Row{"AProxy", "new Proxy({}, {})", {}}, Row{"APromise", "Promise.resolve(1)", {}},
                    Row{"AWeakMap", "new WeakMap", {}}, Row{"AThrowingGetter", "{get a() { throw 1 }}", {}},
                    Row{"AConversionOfItsOwn", "{toJSON() { return {a: 1} }}", {}},
                    Row{"ACycle", "(() => { const a = {}; a.b = {a}; return a })()", {}}),
    rowName);

TEST_F(GtkMessages, KeepSecondsAndThresholdThatAreNotFinite) {
    auto const bodies = posted("{seconds: NaN, threshold: Infinity}");
    ASSERT_EQ(bodies.size(), 1U);
    EXPECT_TRUE(std::isnan(bodies[0].at("seconds").get<double>()));
    EXPECT_EQ(bodies[0].at("threshold"), INFINITY);
}

TEST_F(GtkMessages, ArriveAfterACycle) {
    EXPECT_EQ(received("const a = {}; a.a = a; post(a); post({a: 1}); post(a); post({a: 2})"),
              (std::vector<Json>{{{"a", 1}}, {{"a", 2}}}));
}

TEST_F(GtkMessages, MayHoldTenMegabytesOfText) {
    auto const bodies = posted("{a: 'x'.repeat(10 << 20) + '\\ud83d'}");
    ASSERT_EQ(bodies.size(), 1U);
    EXPECT_EQ(bodies[0].at("a").get<std::string>(), std::string(10 << 20, 'x') + "\ufffd");
}

TEST_F(GtkMessages, MayHoldManyNumbers) {
    auto const bodies = posted("{a: Array.from({length: 200000}, (_, i) => i)}");
    ASSERT_EQ(bodies.size(), 1U);
    ASSERT_EQ(bodies[0].at("a").size(), 200'000U);
    EXPECT_EQ(bodies[0].at("a").back(), 199'999);
}

TEST_F(GtkMessages, MayHoldManyKeys) {
    auto const bodies = posted("Object.fromEntries(Array.from({length: 20000}, (_, i) => ['k' + i, i]))");
    ASSERT_EQ(bodies.size(), 1U);
    EXPECT_EQ(bodies[0].size(), 20'000U);
    EXPECT_EQ(bodies[0].at("k19999"), 19'999);
}

TEST_F(GtkMessages, AreDroppedWhenNestedTooDeep) {
    auto const bodies = received("const nest = n => { let a = 1; while (n--) a = {a}; return a }; "
                                 "for (const n of [512, 513, 5000]) post(nest(n))");
    ASSERT_EQ(bodies.size(), 1U);
    int levels = 0;
    for (auto const* at = bodies.data(); at->is_object(); at = &at->at("a"))
        ++levels;
    EXPECT_EQ(levels, 512);
}

TEST_F(GtkMessages, NestedBeyondTheEnginesStackCostAtMostTheWebProcess) {
    for (auto const* levels : {"30000", "100000"}) {
        static_cast<void>(run("let a = 1; for (let n = 0; n < "s + levels +
                              "; n++) a = {a}; "
                              "webkit.messageHandlers.fcpBridge.postMessage(a); undefined"));
        EXPECT_EQ(handler->bodies, std::vector<Json>{}) << levels;
        EXPECT_EQ(reportsUpToTheNextPage().back(), "finished");
        EXPECT_EQ(posted("{a: 1}"), (std::vector<Json>{{{"a", 1}}}));
        handler->bodies.clear();
    }
}

TEST_F(GtkMessages, ArriveInOrderWhenThereAreManyOfThem) {
    auto const bodies = received("for (let i = 0; i < 20000; i++) post(i % 7 ? {i} : 'no object')");
    std::vector<Json> expected;
    for (int i = 0; i < 20'000; ++i) {
        if (i % 7 != 0)
            expected.push_back({{"i", i}});
    }
    EXPECT_TRUE(bodies == expected) << bodies.size() << " arrived";
}

TEST_F(GtkMessages, ResolveTheirPromiseWithoutAValue) {
    EXPECT_EQ(run("webkit.messageHandlers.fcpBridge.postMessage({}).then(value => "
                  "webkit.messageHandlers.fcpBridge.postMessage({value: String(value)})); undefined"),
              "");
    ASSERT_TRUE(waitForMessages(2));
    EXPECT_EQ(handler->bodies[1], (Json{{"value", "undefined"}}));
}

TEST_F(GtkMessages, ArriveFromEveryFrame) {
    auto const post = "<script>webkit.messageHandlers.fcpBridge.postMessage({origin})</script>"s;
    server.answer("/inner", pageAnswer(post));
    server.answer("/frames", pageAnswer(post + "<iframe src='" + server.url("/inner", "127.0.0.1") +
                                        "'></iframe><iframe sandbox=allow-scripts src=/inner></iframe>"));
    load(server.url("/frames"));
    ASSERT_TRUE(waitForMessages(3));
    for (auto const& origin : {server.url(""), server.url("", "127.0.0.1"), "null"s})
        EXPECT_EQ(std::ranges::count(handler->bodies, Json{{"origin", origin}}), 1) << origin;
}

TEST_F(GtkMessages, StopAtOnceWhenAHandlerIsRemovedAndComeBackOnALivePage) {
    handler->onMessage = [this] { controller->removeAllScriptMessageHandlers(); };
    EXPECT_EQ(
        run("for (let i = 0; i < 100; i++) webkit.messageHandlers.fcpBridge?.postMessage({i}); undefined"),
        "");
    EXPECT_EQ(run("if (window.webkit?.messageHandlers?.fcpBridge) throw 'still there'; undefined"), "");
    EXPECT_EQ(handler->bodies, (std::vector<Json>{{{"i", 0}}}));

    auto const next = std::make_shared<RecordingHandler>();
    controller->addScriptMessageHandler(next, "fcpBridge");
    EXPECT_EQ(run("webkit.messageHandlers.fcpBridge.postMessage({a: 1}); undefined"), "");
    ASSERT_TRUE(waitFor([&next] { return next->bodies.size() == 1; }));
    EXPECT_EQ(handler->bodies.size(), 1U);
}

TEST_F(GtkMessages, MayDropTheViewItsHandlerAndItsController) {
    std::weak_ptr<RecordingHandler> const weak = handler;
    handler->onMessage = [this] {
        webView.reset();
        controller.reset();
        handler.reset();
    };
    webView->evaluateJavaScript(
        "for (let i = 0; i < 100; i++) webkit.messageHandlers.fcpBridge.postMessage({i}); undefined", {});
    ASSERT_TRUE(waitFor([this] { return !webView; }));
    EXPECT_TRUE(waitFor([&weak] { return weak.expired(); }));
}

TEST_F(GtkMessages, ArriveAfterTheWebProcessWasKilled) {
    killWebProcesses();
    EXPECT_EQ(reportsUpToTheNextPage(), (std::vector<std::string>{"finished", "finished"}));
    EXPECT_EQ(posted("{a: 1}"), (std::vector<Json>{{{"a", 1}}}));
}

TEST_F(GtkMessages, GoToTheHandlerOfTheirName) {
    auto const other = std::make_shared<RecordingHandler>();
    controller->addScriptMessageHandler(other, "other");
    EXPECT_EQ(run("webkit.messageHandlers.other.postMessage({a: 1}); "
                  "webkit.messageHandlers.fcpBridge.postMessage({b: 2}); undefined"),
              "");
    ASSERT_TRUE(waitForMessages(1));
    EXPECT_EQ(other->bodies, (std::vector<Json>{{{"a", 1}}}));
    EXPECT_EQ(handler->bodies, (std::vector<Json>{{{"b", 2}}}));
}

TEST(GtkUserContentControllerDeathTest, AbortsWhenANameIsTaken) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    Journal journal;
    FakeLogSystem logs(journal);
    FakeMainLoop loop;
    GtkWebEngine engine(loop, logs);
    auto const controller = engine.makeUserContentController();
    controller->addScriptMessageHandler(std::make_shared<RecordingHandler>(), "fcpBridge");
    EXPECT_DEATH(controller->addScriptMessageHandler(std::make_shared<RecordingHandler>(), "fcpBridge"),
                 "A script message handler named \"fcpBridge\" exists already");
}

} // namespace

} // namespace fcp::test
