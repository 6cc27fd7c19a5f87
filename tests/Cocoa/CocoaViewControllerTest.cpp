#include "Cocoa/PrincipalFixture.h"

#include "FcpExtension/DiagnosticPage.h"
#include "FcpExtension/ServiceHosts.h"

namespace fcp::test {

namespace {

using Superclass = PrincipalPanel::SuperclassCalls;

std::string const productionURL = "https://" + std::string(primaryHost) + "/fcp-panel/login";
constexpr auto developmentURL = "http://localhost:3000/fcp-panel/login";

class CocoaViewController : public PrincipalFixture {};

TEST_F(CocoaViewController, DoesEverythingInItsOrder) {
    open();
    EXPECT_EQ(journal.lines(), (Lines{
                                   "info: loadView starting, panelURL: " + productionURL,
                                   "make web view 1",
                                   "host singleton",
                                   "host timeline",
                                   "timeline add:",
                                   "add handler fcpBridge",
                                   "web view 1 destroyed",
                                   "make web view 2",
                                   "web view 2 setNavigationDelegate",
                                   "web view 2 setInspectable",
                                   "info: Web Inspector enabled \u2014 open Safari \u2192 Develop \u2192 "
                                   "This Mac \u2192 FCP Extension",
                                   "host singleton",
                                   "host timeline",
                                   "timeline add:",
                                   "remove all handlers",
                                   "host timeline",
                                   "timeline remove:",
                                   "add handler fcpBridge",
                                   "info: showLoading",
                                   "web view 2 load " + productionURL,
                                   "info: loadView complete, loading started",
                               }));
    EXPECT_EQ(page().loads(), (std::vector<Load>{{productionURL, "", 60, true}}));
    EXPECT_TRUE(page().hasDeveloperExtras());
    EXPECT_TRUE(page().isInspectable());
    EXPECT_EQ(page().handlers(), 1U);
    EXPECT_EQ(liveTimers(), 2U);
}

TEST_F(CocoaViewController, CallsTheSuperclassForTheLoadedViewAndNotForTheLoading) {
    open();
    EXPECT_EQ(PrincipalPanel::takeSuperclassCalls(), (Superclass{.loadView = 0, .viewDidLoad = 1}));
    panel->open();
    EXPECT_EQ(PrincipalPanel::takeSuperclassCalls(), Superclass{});
}

TEST_F(CocoaViewController, IsMadeByACoderToo) {
    panel = std::make_unique<PrincipalPanel>(PrincipalPanel::Way::Coder);
    EXPECT_TRUE(panel->isMade());
    EXPECT_EQ(journal.lines(), Lines{}); // nothing is built before the view is asked for
    panel->open();
    EXPECT_EQ(page().loads().size(), 1U);
}

TEST_F(CocoaViewController, IsNoObjectWhenTheSuperclassGivesNone) {
    failCoderInitialiser(true);
    panel = std::make_unique<PrincipalPanel>(PrincipalPanel::Way::Coder);
    failCoderInitialiser(false);
    EXPECT_FALSE(panel->isMade());
}

TEST_F(CocoaViewController, MarksNothingInspectableOnAnOlderSystem) {
    setKnowsInspection(false);
    open();
    EXPECT_FALSE(page().isInspectable());
    EXPECT_TRUE(page().hasDeveloperExtras());
    EXPECT_EQ(logLines(), (Lines{"info: loadView starting, panelURL: " + productionURL, "info: showLoading",
                                 "info: loadView complete, loading started"}));
}

TEST_F(CocoaViewController, RequestsTheDevelopmentPageWithItsMarker) {
    Marker const marker("/tmp/zelvix-fcp-dev");
    open();
    EXPECT_EQ(page().loads(), (std::vector<Load>{{developmentURL, "", 60, true}}));
    EXPECT_EQ(journal.lines().at(0), "info: loadView starting, panelURL: " + std::string(developmentURL));
}

TEST_F(CocoaViewController, LoadsTheInlinePageWithBothMarkersAndTheRequestOnRetry) {
    Marker const development("/tmp/zelvix-fcp-dev");
    Marker const diagnostic("/tmp/zelvix-fcp-diag");
    open();
    EXPECT_EQ(page().loads(), (std::vector<Load>{{"", std::string(diagnosticPage), 0, false}}));
    EXPECT_EQ(Lines(journal.lines().end() - 3, journal.lines().end()),
              (Lines{"web view 2 load HTML", "info: Diagnostic mode: loading inline HTML",
                     "info: loadView complete, loading started"}));
    panel->pressRetry();
    EXPECT_EQ(page().loads().at(1), (Load{"about:blank", "", 60, true}));
}

TEST_F(CocoaViewController, RevealsAfterFourSecondsAndAnnouncesItselfHalfASecondLater) {
    open();
    advanceTime(Seconds(3.9));
    EXPECT_FALSE(panel->isHidden("Loading"));
    advanceTime(Seconds(0.2));
    EXPECT_TRUE(panel->isHidden("Loading"));
    EXPECT_EQ(liveTimers(), 0U);
    EXPECT_EQ(page().eventNames(), Lines{});
    advanceTime(Seconds(0.5));
    EXPECT_EQ(page().eventNames(), (Lines{"fcp:connected", "fcp:sequence-changed"}));
    advanceTime(Seconds(60));
    EXPECT_TRUE(panel->isHidden("Connection error"));
}

TEST_F(CocoaViewController, TurnsTheFourNavigationCallbacksIntoOverlays) {
    open();
    journal.take();
    page().finish();
    page().fail({"NSURLErrorDomain", -1009, "offline"});
    EXPECT_TRUE(panel->hasText("Failed to connect to Zelvix. Check your internet connection."));
    page().failProvisionally({"NSURLErrorDomain", -1009, "offline"});
    EXPECT_TRUE(panel->hasText("You appear to be offline. Reconnect to the internet, then retry."));
    EXPECT_FALSE(panel->isHidden("Connection error"));
    EXPECT_TRUE(panel->isHidden("Loading"));
    EXPECT_EQ(page().decide("http://localhost:3000/x"), std::vector<bool>{true});
    EXPECT_EQ(page().decide("https://www." + std::string(primaryHost) + "/"), std::vector<bool>{false});
    EXPECT_EQ(page().decide(std::nullopt), std::vector<bool>{false});
    EXPECT_EQ(takeOpenedAddresses(), Lines{"https://www." + std::string(primaryHost) + "/"});
    EXPECT_EQ(logLines(),
              (Lines{"info: didFinish: " + productionURL, "info: hideLoadingOverlay \u2014 revealing WebView",
                     "error: didFail: offline",
                     "error: showError: Failed to connect to Zelvix. Check your internet connection.",
                     "error: didFailProvisional: [NSURLErrorDomain:-1009] offline",
                     "error: showError: You appear to be offline. Reconnect to the internet, then retry.",
                     "debug: navigate policy: http://localhost:3000/x",
                     "debug: navigate policy: https://www." + std::string(primaryHost) + "/",
                     "info: Opening external URL: https://www." + std::string(primaryHost) + "/"}));
}

TEST_F(CocoaViewController, GivesTheRetryButtonTheKeyboardOnlyInAWindow) {
    open();
    page().fail({"a", 1, "broken"});
    EXPECT_FALSE(panel->buttonHasKeyboard());
    panel->show(400, 700);
    page().fail({"a", 1, "broken again"});
    EXPECT_TRUE(panel->buttonHasKeyboard());
}

TEST_F(CocoaViewController, RetriesByTheButtonsMessage) {
    open();
    page().failProvisionally({"NSURLErrorDomain", -1003, "no such host"});
    journal.take();
    panel->pressRetry();
    EXPECT_EQ(journal.lines(),
              (Lines{"info: retryConnection", "info: showLoading", "web view 2 load " + productionURL}));
    EXPECT_TRUE(panel->hasText("Reopening your review workspace\u2026"));
    EXPECT_TRUE(panel->isHidden("Connection error"));
    EXPECT_FALSE(panel->isHidden("Loading"));
    EXPECT_EQ(liveTimers(), 2U);
    panel->pressRetry();
    EXPECT_EQ(liveTimers(), 2U);
}

TEST_F(CocoaViewController, AnswersThePageFromTheHost) {
    open();
    page().post({{"command", "getTimeline"}, {"resolveId", "1"}});
    page().post({{"command", "seekTo"}, {"seconds", 2.5}, {"resolveId", "2"}});
    EXPECT_EQ(page().eventNames(), (Lines{"fcp:resolve", "fcp:resolve"}));
    EXPECT_EQ(host.movedTo().value, 1500);
    EXPECT_EQ(host.movedTo().timescale, 600);
}

TEST_F(CocoaViewController, TellsThePageOfThePlayhead) {
    open();
    host.keepObservers();
    host.notifyPlayhead();
    EXPECT_EQ(page().eventNames(), Lines{"fcp:playhead-changed"});
}

TEST_F(CocoaViewController, SendsCommandsAndHearsAnswersBeforeThePageHasLoaded) {
    open();
    EXPECT_EQ(observersOfAnySender(), 1);
    page().post({{"command", "clearAllMarkers"}, {"resolveId", "1"}});
    ASSERT_EQ(posts().size(), 1U);
    EXPECT_EQ(posts()[0].name, "com.zelvix.fcp.containerCommand");
    EXPECT_TRUE(posts()[0].isImmediate);
    EXPECT_EQ(page().eventNames(), Lines{});
    advanceTime(Seconds(60)); // nobody answers
    EXPECT_EQ(page().eventNames().back(), "fcp:resolve");
}

TEST_F(CocoaViewController, WritesTheTimersLinesToTheDefaultLogWhenItIsGone) {
    open();
    journal.take();
    panel.reset();
    advanceTime(Seconds(30));
    EXPECT_EQ(logLines(), (Lines{"default info: Auto-reveal timer fired \u2014 hiding overlay",
                                 "default error: Load timed out after 30s"}));
}

TEST_F(CocoaViewController, LeavesNothingThatCallsBackInAViewThatTheHostKeeps) {
    open();
    panel->show(400, 700);
    EXPECT_TRUE(page().hasDelegate());
    EXPECT_TRUE(panel->buttonHasTarget());
    host.keepObservers();
    panel->letGo();
    ASSERT_EQ(nativePages(), 1U);
    EXPECT_FALSE(page().hasDelegate());
    EXPECT_FALSE(panel->buttonHasTarget());
    panel->pressRetry();
    page().post({{"command", "getTimeline"}, {"resolveId", "1"}});
    host.notifyPlayhead();
    EXPECT_EQ(page().eventNames(), Lines{});
    advanceTime(Seconds(61));
}

TEST_F(CocoaViewController, WorksWithoutAHost) {
    host.dropHost();
    open();
    page().post({{"command", "getTimeline"}, {"resolveId", "1"}});
    page().post({{"command", "getPlayhead"}, {"resolveId", "2"}});
    EXPECT_EQ(page().eventNames(), (Lines{"fcp:resolve", "fcp:resolve"}));
}

TEST_F(CocoaViewController, ServesTwoPanelsAtOnce) {
    open();
    auto const first = page();
    PrincipalPanel second;
    second.open();
    host.keepObservers();
    host.notifyPlayhead();
    EXPECT_EQ(first.eventNames(), Lines{"fcp:playhead-changed"});
    EXPECT_EQ(page().eventNames(), Lines{"fcp:playhead-changed"});
}

} // namespace

} // namespace fcp::test
