#include "Contract/WebFixture.h"
#include "Platform/Gtk/GLibMainLoop.h"

#include <gio/gio.h>

#include <algorithm>
#include <ostream>

namespace fcp::test {

namespace {

using Then = ServerAnswer::Then;
using Lines = std::vector<std::string>;

std::string provisional(int code) {
    return "failed provisionally NSURLErrorDomain " + std::to_string(code);
}

std::string committed(int code) {
    return "failed NSURLErrorDomain " + std::to_string(code);
}

bool contains(Lines const& lines, std::string const& line) {
    return std::ranges::find(lines, line) != lines.end();
}

class GtkNavigation : public WebFixture {
protected:
    void loadPage(std::string const& path, std::string const& body) {
        server.answer(path, pageAnswer(body));
        load(server.url(path));
        ASSERT_TRUE(waitForReports(delegate->reports.size() + 1));
    }

    // Returns when the server has the request, which it leaves unanswered.
    void loadAndStall(std::string const& path) {
        server.answer(path, {"", Then::Stall});
        load(server.url(path));
        ASSERT_TRUE(waitFor([this] { return server.stalled() == 1; }));
    }

    // Returns while the page is committed, but far from complete. The engine shows nothing of a page before
    // it has some hundred bytes.
    void loadHalfPage() {
        server.answer("/half", cutAnswer("<script>webkit.messageHandlers.fcpBridge.postMessage({})</script>" +
                                             std::string(2000, 'x'),
                                         Then::Stall));
        load(server.url("/half"));
        ASSERT_TRUE(waitForMessages(1));
        ASSERT_TRUE(waitFor([this] { return server.stalled() == 1; }));
    }

    // The engine tells of data at intervals, and of a piece perhaps only when the next one comes.
    [[nodiscard]] bool feedUntil(std::function<bool()> const& condition) {
        for (int pieces = 0; pieces < 2000 && !condition(); ++pieces) {
            server.feedStalled(std::string(20, 'y'));
            EXPECT_EQ(run("undefined"), "");
            EXPECT_TRUE(waitFor([this] { return server.stalled() == 1; }));
        }
        return condition();
    }

    [[nodiscard]] bool waitUntilAsked(std::string const& address) {
        return waitFor([&] { return contains(delegate->asked, address); });
    }

    // Until the time-out that is owed.
    [[nodiscard]] Seconds timeLeft() const {
        for (auto const& [left, done] : loop.deadlines()) {
            if (!done)
                return left;
        }
        return Seconds(0);
    }
};

// What one load of "/page" comes to, told exactly once.
struct Row {
    std::string name;
    ServerAnswer answer;
    std::string report;
};

std::ostream& operator<<(std::ostream& out, Row const& row) {
    return out << row.name;
}

constexpr auto rowName = [](auto const& row) { return row.param.name; };

class GtkNavigationServerTable : public GtkNavigation, public testing::WithParamInterface<Row> {};

TEST_P(GtkNavigationServerTable, ReportsTheLoadOnceAndLoadsTheNextPage) {
    server.answer("/page", GetParam().answer);
    load(server.url("/page"));
    ASSERT_TRUE(waitForReports(1));
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{GetParam().report, "finished"}));
}

INSTANTIATE_TEST_SUITE_P(
    Success, GtkNavigationServerTable,
    testing::Values(Row{"APage", pageAnswer("page"), "finished"},
                    Row{"ARedirect", redirectAnswer("/ok"), "finished"},
                    Row{"AMissingPage", pageAnswer("gone", "404 Not Found"), "finished"},
                    Row{"AnEmptyMissingPage", pageAnswer("", "404 Not Found"), "finished"},
                    Row{"AServerError", pageAnswer("oops", "500 Oops"), "finished"},
                    Row{"AnUnauthorizedPage",
                        pageAnswer("secret", "401 Unauthorized",
                                   "Content-Type: text/html\r\nWWW-Authenticate: Basic realm=\"x\"\r\n"),
                        "finished"},
                    Row{"AnEarlyClose", cutAnswer("short", Then::Close), "finished"},
                    Row{"ChunksWithoutEnd",
                        {"HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nTransfer-Encoding: "
                         "chunked\r\n\r\n5\r\nhello\r\n"},
                        "finished"}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Failure, GtkNavigationServerTable,
    testing::Values(
        Row{"ACloseWithoutAByte", {}, provisional(-1005)},
        Row{"AResetAtOnce", {"", Then::Reset}, provisional(-1005)},
        Row{"HalfAHeader", {"HTTP/1.1 200 OK\r\nContent-Ty"}, provisional(-1017)},
        Row{"Garbage", {"hello this is not http\r\n\r\n"}, provisional(-1017)},
        Row{"ARedirectLoop", redirectAnswer("/page"), provisional(-1007)},
        Row{"ARedirectToAClosedPort",
            redirectAnswer("http://localhost:" + std::to_string(MisbehavingServer::closedPort()) + "/"),
            provisional(-1004)},
        Row{"NoContent",
            {"HTTP/1.1 204 No Content\r\nConnection: close\r\n\r\n"},
            "failed provisionally WebKitErrorDomain 102"},
        Row{"AnUnsupportedType", pageAnswer("\1\2\3", "200 OK", "Content-Type: application/x-foo\r\n"),
            "failed provisionally WebKitErrorDomain 102"},
        Row{"AnAttachment",
            pageAnswer("data", "200 OK",
                       "Content-Type: application/octet-stream\r\n"
                       "Content-Disposition: attachment; filename=\"a.bin\"\r\n"),
            "failed provisionally WebKitErrorDomain 102"}),
    rowName);

// Addresses that need no server.
struct AddressRow {
    std::string name;
    std::string address;
    std::string report;
};

std::ostream& operator<<(std::ostream& out, AddressRow const& row) {
    return out << row.name;
}

class GtkNavigationAddressTable : public GtkNavigation, public testing::WithParamInterface<AddressRow> {};

TEST_P(GtkNavigationAddressTable, ReportsTheLoadOnceAndLoadsTheNextPage) {
    load(GetParam().address);
    ASSERT_TRUE(waitForReports(1));
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{GetParam().report, "finished"}));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, GtkNavigationAddressTable,
    testing::Values(
        AddressRow{"AClosedPort", "http://localhost:" + std::to_string(MisbehavingServer::closedPort()) + "/",
                   provisional(-1004)},
        AddressRow{"ARestrictedPort", "http://localhost:25/", "failed provisionally WebKitErrorDomain 103"},
        AddressRow{"AnUnknownScheme", "foo://bar/", provisional(-1002)},
        AddressRow{"AMailAddress", "mailto:x@zelvix.example", provisional(-1002)},
        AddressRow{"ASchemeAlone", "http://", provisional(-1002)},
        AddressRow{"AMissingFile", "file:///no/such/file", provisional(-1100)},
        AddressRow{"AnEmptyPage", "about:blank", "finished"},
        AddressRow{"ADataAddress", "data:text/html,<p>hi", "finished"}),
    rowName);

TEST_F(GtkNavigation, TellsAnUnknownHostFromBeingOffline) {
    load("http://no-such-host.invalid/");
    ASSERT_TRUE(waitForReports(1));
    bool const online = g_network_monitor_get_network_available(g_network_monitor_get_default());
    EXPECT_EQ(delegate->reports, Lines{provisional(online ? -1003 : -1009)});
}

TEST_F(GtkNavigation, DistrustsACertificateThatSignsItself) {
    MisbehavingServer secure(MisbehavingServer::Transport::SelfSignedTls);
    load(secure.url("/page"));
    ASSERT_TRUE(waitForReports(1));
    EXPECT_EQ(delegate->reports, Lines{provisional(-1202)});
    EXPECT_TRUE(secure.requests().empty());
}

TEST_F(GtkNavigation, DescribesAFailureInTheEnginesWords) {
    load("http://localhost:" + std::to_string(MisbehavingServer::closedPort()) + "/");
    ASSERT_TRUE(waitForReports(1));
    EXPECT_NE(delegate->latestDescription.find("refused"), std::string::npos) << delegate->latestDescription;
}

TEST_F(GtkNavigation, ReportsAResetAfterTheCommitAsACommittedFailure) {
    loadHalfPage();
    server.endStalled(Then::Reset);
    ASSERT_TRUE(waitForReports(1));
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{committed(-1005), "finished"}));
}

TEST_F(GtkNavigation, TimesOutWhenTheServerNeverAnswers) {
    loadAndStall("/hang");
    loop.advance(Seconds(59.9));
    EXPECT_EQ(delegate->reports, Lines{});
    loop.advance(Seconds(60));
    ASSERT_TRUE(waitForReports(1));
    EXPECT_EQ(delegate->latestDescription, "The request timed out.");
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{provisional(-1001), "finished"}));
}

TEST_F(GtkNavigation, TimesOutWhenTheServerNeverEndsThePage) {
    loadHalfPage();
    loop.advance(Seconds(60));
    ASSERT_TRUE(waitForReports(1));
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{committed(-1001), "finished"}));
}

TEST_F(GtkNavigation, TimesOutInRealTimeAfterWhatTheRequestSays) {
    GLibMainLoop realLoop;
    GtkWebEngine realEngine(realLoop, logs);
    webView = realEngine.makeWebView();
    webView->setNavigationDelegate(delegate);
    server.answer("/hang", {"", Then::Stall});
    load(server.url("/hang"), 0.3);
    ASSERT_TRUE(waitForReports(1));
    EXPECT_EQ(delegate->reports, Lines{provisional(-1001)});
    webView.reset();
}

TEST_F(GtkNavigation, TimesOutBeforeTheEngineHasBegun) {
    server.answer("/hang", {"", Then::Stall});
    load(server.url("/hang"), 0.3);
    loop.advance(Seconds(0.3));
    EXPECT_EQ(delegate->reports, Lines{provisional(-1001)});
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{provisional(-1001), "finished"}));
}

TEST_F(GtkNavigation, TimesOutAfterARedirect) {
    server.answer("/page", redirectAnswer("/hang"));
    server.answer("/hang", {"", Then::Stall});
    load(server.url("/page"));
    ASSERT_TRUE(waitFor([this] { return server.stalled() == 1; }));
    loop.advance(Seconds(120));
    ASSERT_TRUE(waitForReports(1));
    EXPECT_EQ(delegate->reports, Lines{provisional(-1001)});
}

TEST_F(GtkNavigation, TimesOutOnANavigationThatThePageStarts) {
    loadPage("/page", "page");
    server.answer("/hang", {"", Then::Stall});
    EXPECT_EQ(run("location.href = '/hang'; undefined"), "");
    ASSERT_TRUE(waitFor([this] { return server.stalled() == 1 && loop.pending() == 1; }));
    loop.advance(Seconds(60));
    ASSERT_TRUE(waitForReports(2));
    EXPECT_EQ(delegate->reports, (Lines{"finished", provisional(-1001)}));
}

TEST_F(GtkNavigation, GivesALongPageItsTimeAnewWithEveryPieceOfIt) {
    loadHalfPage();
    for (int piece = 0; piece < 3; ++piece) {
        loop.advance(Seconds(50));
        ASSERT_TRUE(feedUntil([this] { return timeLeft() > Seconds(50); }));
    }
    EXPECT_EQ(delegate->reports, Lines{});
    server.endStalled(Then::Close);
    ASSERT_TRUE(waitForReports(1));
    EXPECT_EQ(delegate->reports, Lines{"finished"});
}

TEST_F(GtkNavigation, DoesNotFailAPageThatWaitsForAnImage) {
    server.answer("/page", pageAnswer("<img src=/hang>"));
    server.answer("/hang", {"", Then::Stall});
    load(server.url("/page"));
    ASSERT_TRUE(waitFor([this] { return server.stalled() == 1 && loop.pending() == 0; }));
    EXPECT_EQ(delegate->reports, Lines{});
    server.endStalled(Then::Close);
    ASSERT_TRUE(waitForReports(1));
    EXPECT_EQ(delegate->reports, Lines{"finished"});
}

TEST_F(GtkNavigation, OwesNoTimeOutAfterTheLoad) {
    loadPage("/page", "page");
    EXPECT_EQ(loop.pending(), 0U);
    load("http://localhost:" + std::to_string(MisbehavingServer::closedPort()) + "/");
    EXPECT_EQ(loop.pending(), 1U);
    ASSERT_TRUE(waitForReports(2));
    EXPECT_EQ(loop.pending(), 0U);
}

TEST_F(GtkNavigation, OwesNoTimeOutForALoadThatIsTurnedDown) {
    delegate->unwanted = {"/unwanted"};
    load(server.url("/unwanted"));
    EXPECT_EQ(loop.pending(), 1U);
    ASSERT_TRUE(waitUntilAsked(server.url("/unwanted")));
    EXPECT_EQ(loop.pending(), 0U);
}

TEST_F(GtkNavigation, OwesNoTimeOutOnceItIsDropped) {
    loadAndStall("/hang");
    webView.reset();
    EXPECT_EQ(loop.pending(), 0U);
}

TEST_F(GtkNavigation, DoesNotReportAProvisionalLoadThatItReplaces) {
    loadAndStall("/hang");
    EXPECT_EQ(reportsUpToTheNextPage(), Lines{"finished"});
}

TEST_F(GtkNavigation, DoesNotReportACommittedLoadThatItReplaces) {
    loadHalfPage();
    EXPECT_EQ(reportsUpToTheNextPage(), Lines{"finished"});
}

TEST_F(GtkNavigation, ReportsALoadThatThePageReplaces) {
    loadHalfPage();
    EXPECT_EQ(run("location.href = '/ok'; undefined"), "");
    ASSERT_TRUE(waitForReports(2));
    EXPECT_EQ(delegate->reports, (Lines{committed(-999), "finished"}));
}

TEST_F(GtkNavigation, ReportsTheReplacementWhenThatFails) {
    loadAndStall("/hang");
    load("http://localhost:" + std::to_string(MisbehavingServer::closedPort()) + "/");
    ASSERT_TRUE(waitForReports(1));
    EXPECT_EQ(delegate->reports, Lines{provisional(-1004)});
}

TEST_F(GtkNavigation, FinishesOnceForTwoLoadsInOneTick) {
    server.answer("/hang", {"", Then::Stall});
    load(server.url("/hang"));
    EXPECT_EQ(reportsUpToTheNextPage(), Lines{"finished"});
}

TEST_F(GtkNavigation, LoadsAnewFromInsideAFailureReport) {
    delegate->onReport = [this] {
        delegate->onReport = nullptr;
        load(server.url("/ok"));
    };
    load("http://localhost:" + std::to_string(MisbehavingServer::closedPort()) + "/");
    ASSERT_TRUE(waitForReports(2));
    EXPECT_EQ(delegate->reports, (Lines{provisional(-1004), "finished"}));
}

TEST_F(GtkNavigation, SurvivesBeingDroppedFromInsideAReport) {
    delegate->onReport = [this] { webView.reset(); };
    load(server.url("/ok"));
    ASSERT_TRUE(waitForReports(1));
    EXPECT_EQ(delegate->reports, Lines{"finished"});
}

TEST_F(GtkNavigation, DoesNotReportARedirectThatThePolicyTurnsDown) {
    delegate->unwanted = {"127.0.0.1"};
    server.answer("/page", redirectAnswer(server.url("/ok", "127.0.0.1")));
    load(server.url("/page"));
    ASSERT_TRUE(waitUntilAsked(server.url("/ok", "127.0.0.1")));
    EXPECT_EQ(reportsUpToTheNextPage(), Lines{"finished"});
}

TEST_F(GtkNavigation, StaysOnThePageWhenALinkIsTurnedDown) {
    loadPage("/page", "<a id=a href='http://127.0.0.1/elsewhere'>a</a>");
    delegate->unwanted = {"127.0.0.1"};
    EXPECT_EQ(run("document.getElementById('a').click()"), "");
    ASSERT_TRUE(waitUntilAsked("http://127.0.0.1/elsewhere"));
    EXPECT_EQ(address(), server.url("/page"));
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{"finished", "finished"}));
}

TEST_F(GtkNavigation, FinishesACommittedLoadWhoseScriptIsTurnedDown) {
    loadHalfPage();
    delegate->unwanted = {"127.0.0.1"};
    EXPECT_EQ(run("location.href = 'http://127.0.0.1/'; undefined"), "");
    ASSERT_TRUE(waitUntilAsked("http://127.0.0.1/"));
    server.endStalled(Then::Close);
    ASSERT_TRUE(waitForReports(1));
    EXPECT_EQ(delegate->reports, Lines{"finished"});
}

TEST_F(GtkNavigation, SaysNothingOfAnEmptyPageThatWasTurnedDown) {
    delegate->unwanted = {"about:blank"};
    load("about:blank");
    ASSERT_TRUE(waitUntilAsked("about:blank"));
    EXPECT_EQ(reportsUpToTheNextPage(), Lines{"finished"});
}

TEST_F(GtkNavigation, ShowsAnInlinePageUnderTheEmptyAddress) {
    webView->loadHTMLString(
        "<script>webkit.messageHandlers.fcpBridge.postMessage({href: location.href})</script>");
    ASSERT_TRUE(waitForReports(1));
    ASSERT_TRUE(waitForMessages(1));
    EXPECT_EQ(handler->bodies.front(), Json({{"href", "about:blank"}}));
    EXPECT_EQ(delegate->asked, Lines{"about:blank"});
    EXPECT_EQ(address(), "about:blank");
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{"finished", "finished"}));
}

TEST_F(GtkNavigation, DoesNotShowAnInlinePageThatIsTurnedDown) {
    delegate->unwanted = {"about:blank"};
    webView->loadHTMLString("<script>webkit.messageHandlers.fcpBridge.postMessage({})</script>");
    ASSERT_TRUE(waitUntilAsked("about:blank"));
    EXPECT_EQ(reportsUpToTheNextPage(), Lines{"finished"});
    EXPECT_TRUE(handler->bodies.empty());
}

TEST_F(GtkNavigation, AsksForEveryFrameAndReportsThePageAlone) {
    auto const closed = "http://localhost:" + std::to_string(MisbehavingServer::closedPort()) + "/";
    loadPage("/page",
             "<iframe src='/ok?same'></iframe><iframe src='" + closed +
                 "'></iframe><iframe srcdoc='<p>x'></iframe><iframe src='data:text/html,hi'></iframe>"
                 "<iframe></iframe>");
    for (auto const& address : {server.url("/ok?same"), closed, std::string("about:srcdoc"),
                                std::string("data:text/html,hi"), std::string("about:blank")})
        EXPECT_EQ(std::ranges::count(delegate->asked, address), 1) << address;
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{"finished", "finished"}));
}

TEST_F(GtkNavigation, SaysNothingOfFailingSubresources) {
    loadPage("/page", "<img src=/gone.png><img src='http://localhost:" +
                          std::to_string(MisbehavingServer::closedPort()) +
                          "/x.png'><script src=/gone.js></script>");
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{"finished", "finished"}));
}

TEST_F(GtkNavigation, AsksOnceForALinkToANewWindow) {
    loadPage("/page", "<a id=a target=_blank href='/ok?blank'>a</a>");
    EXPECT_EQ(run("document.getElementById('a').click()"), "");
    ASSERT_TRUE(waitUntilAsked(server.url("/ok?blank")));
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{"finished", "finished"}));
    EXPECT_EQ(std::ranges::count(delegate->asked, server.url("/ok?blank")), 1);
}

TEST_F(GtkNavigation, AsksOnceForAnUnwantedLinkToANewWindow) {
    loadPage("/page", "<a id=a target=_blank href='http://127.0.0.1/'>a</a>");
    delegate->unwanted = {"127.0.0.1"};
    EXPECT_EQ(run("document.getElementById('a').click()"), "");
    ASSERT_TRUE(waitUntilAsked("http://127.0.0.1/"));
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{"finished", "finished"}));
    EXPECT_EQ(std::ranges::count(delegate->asked, "http://127.0.0.1/"), 1);
}

TEST_F(GtkNavigation, AsksOnceForAScriptsNewWindowAndOpensNone) {
    loadPage("/page",
             "<script>for (const address of ['/ok?open', 'http://127.0.0.1/']) "
             "webkit.messageHandlers.fcpBridge.postMessage({opened: window.open(address)})</script>");
    ASSERT_TRUE(waitForMessages(2));
    EXPECT_EQ(handler->bodies, (std::vector<Json>{{{"opened", nullptr}}, {{"opened", nullptr}}}));
    EXPECT_EQ(delegate->asked, (Lines{server.url("/page"), server.url("/ok?open"), "http://127.0.0.1/"}));
}

TEST_F(GtkNavigation, AsksForJumpsWithinThePageAndReportsNothing) {
    loadPage("/page", "page");
    EXPECT_EQ(run("location.hash = 'x'; history.pushState({}, '', '/pushed'); undefined"), "");
    ASSERT_TRUE(waitUntilAsked(server.url("/page#x")));
    EXPECT_EQ(address(), server.url("/pushed"));
    EXPECT_EQ(delegate->asked, (Lines{server.url("/page"), server.url("/page#x")}));
    EXPECT_EQ(reportsUpToTheNextPage(), (Lines{"finished", "finished"}));
}

TEST_F(GtkNavigation, OwesNoTimeOutForAJumpOfOursWithinThePage) {
    loadPage("/page", "page");
    load(server.url("/page#x"));
    EXPECT_EQ(loop.pending(), 0U);
    ASSERT_TRUE(waitUntilAsked(server.url("/page#x")));
    EXPECT_EQ(delegate->reports, Lines{"finished"});
}

TEST_F(GtkNavigation, ReportsAPageThatThePageGoesTo) {
    loadPage("/page", "page");
    EXPECT_EQ(run("location.replace('/ok?replaced')"), "");
    ASSERT_TRUE(waitForReports(2));
    EXPECT_EQ(delegate->reports, (Lines{"finished", "finished"}));
    EXPECT_EQ(address(), server.url("/ok?replaced"));
}

TEST_F(GtkNavigation, HasNoAddressBeforeTheFirstLoad) {
    EXPECT_FALSE(webView->url());
}

TEST_F(GtkNavigation, LoadsWithoutADelegate) {
    delegate.reset();
    server.answer("/page", pageAnswer("<script>webkit.messageHandlers.fcpBridge.postMessage({})</script>"));
    load(server.url("/page"));
    EXPECT_TRUE(waitForMessages(1));
    EXPECT_FALSE(webView->markInspectable());
}

} // namespace

} // namespace fcp::test
