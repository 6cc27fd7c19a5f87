#include "Platform/Gtk/NavigationTracker.h"
#include "Platform/Gtk/NavigationErrors.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace fcp::test {

namespace {

constexpr auto allow = NavigationActionPolicy::Allow;
constexpr auto cancel = NavigationActionPolicy::Cancel;

std::string const page = "http://localhost/page";
std::string const other = "http://localhost/other";
std::string const foreign = "http://foreign.example/";
std::string const blank = "about:blank";

NavigationError const refused{"NSURLErrorDomain", -1004, "refused"};
NavigationError const cancelled{"NSURLErrorDomain", -999, "cancelled"};
NavigationError const interrupted{"WebKitErrorDomain", 102, "interrupted"};

// The reports so far, one word each, failures with their code.
class Driver {
public:
    void note(NavigationReport const& report) {
        switch (report.kind) {
        case NavigationReport::Kind::Nothing:
            break;
        case NavigationReport::Kind::Finished:
            heard.emplace_back("finished");
            break;
        case NavigationReport::Kind::Failed:
            heard.push_back("failed " + std::to_string(report.error.code));
            break;
        case NavigationReport::Kind::FailedProvisionally:
            heard.push_back("failed provisionally " + std::to_string(report.error.code));
            break;
        }
    }

    NavigationTracker tracker;
    std::vector<std::string> heard;
};

using Step = std::function<void(Driver&)>;

Step request(std::string const& uri) {
    return [uri](Driver& driver) { driver.tracker.requested(uri); };
}

Step decide(std::string const& uri, NavigationActionPolicy policy) {
    return [uri, policy](Driver& driver) { driver.tracker.decided(uri, policy); };
}

Step start(std::string const& uri) {
    return [uri](Driver& driver) { driver.tracker.started(uri); };
}

Step redirect() {
    return [](Driver& driver) { driver.tracker.redirected(); };
}

Step commit(std::string const& uri) {
    return [uri](Driver& driver) { driver.note(driver.tracker.committed(uri)); };
}

Step fail(LoadPhase during, std::string const& uri, NavigationError const& error) {
    return [=](Driver& driver) { driver.note(driver.tracker.failed(during, uri, error)); };
}

Step finish() {
    return [](Driver& driver) { driver.note(driver.tracker.finished()); };
}

Step timeOut() {
    return [](Driver& driver) { driver.note(driver.tracker.timedOut()); };
}

Step completeMainResource() {
    return [](Driver& driver) { driver.tracker.mainResourceCompleted(); };
}

Step terminate() {
    return [](Driver& driver) { driver.tracker.processTerminated(); };
}

constexpr auto provisional = LoadPhase::Provisional;
constexpr auto committed = LoadPhase::Committed;

struct Row {
    std::string name;
    std::vector<Step> events;
    std::vector<std::string> heard;
};

std::ostream& operator<<(std::ostream& out, Row const& row) {
    return out << row.name;
}

constexpr auto rowName = [](auto const& row) { return row.param.name; };

class NavigationTrackerTable : public testing::TestWithParam<Row> {};

TEST_P(NavigationTrackerTable, TellsTheDelegateWhatBecameOfTheLoad) {
    Driver driver;
    for (auto const& event : GetParam().events)
        event(driver);
    EXPECT_EQ(driver.heard, GetParam().heard);
}

std::vector<Row> const plainLoads = {
    {"ASuccessFinishesOnce",
     {request(page), decide(page, allow), start(page), commit(page), finish()},
     {"finished"}},
    {"ARedirectFinishesOnce",
     {request(page), decide(page, allow), start(page), decide(other, allow), redirect(), commit(other),
      finish()},
     {"finished"}},
    {"AFailureBeforeCommitIsProvisional",
     {request(page), decide(page, allow), start(page), fail(provisional, page, refused), finish()},
     {"failed provisionally -1004"}},
    {"AFailureAfterCommitIsCommitted",
     {request(page), start(page), commit(page), fail(committed, page, refused), finish()},
     {"failed -1004"}},
    {"TheEventsOwnPhaseCounts",
     {start(page), commit(page), fail(provisional, page, refused), finish()},
     {"failed provisionally -1004"}},
    {"ASuccessAfterAFailureFinishes",
     {start(page), fail(provisional, page, refused), finish(), start(page), commit(page), finish()},
     {"failed provisionally -1004", "finished"}},
    {"ALoadAskedForInsideTheFailureReportFinishes",
     {start(page), fail(provisional, page, refused), request(page), finish(), start(page), commit(page),
      finish()},
     {"failed provisionally -1004", "finished"}},
    {"TwoLoadsInOneTickFinishOnce",
     {request(page), request(other), decide(page, allow), decide(other, allow), start(""), commit(other),
      finish()},
     {"finished"}},
};

std::vector<Row> const policyLoads = {
    {"AnIgnoredLinkLeavesTheRunningLoadToFinish",
     {start(page), commit(page), decide(foreign, cancel), finish()},
     {"finished"}},
    {"AnIgnoredRedirectTargetIsNoFailure",
     {start(page), decide(foreign, cancel), fail(provisional, foreign, interrupted), finish()},
     {}},
    {"ContentThatCannotBeShownIsAFailure",
     {start(page), fail(provisional, page, interrupted), finish()},
     {"failed provisionally 102"}},
    {"AnInterruptionElsewhereThanTheIgnoredAddressIsAFailure",
     {decide(foreign, cancel), start(page), fail(provisional, page, interrupted), finish()},
     {"failed provisionally 102"}},
    {"AnEmptyPageThatWasTurnedDownIsNotReported",
     {request(blank), decide(blank, cancel), start(""), commit(blank), finish()},
     {}},
    {"AnEmptyPageThatIsAllowedAfterAllFinishes",
     {decide(blank, cancel), decide(blank, allow), start(blank), commit(blank), finish()},
     {"finished"}},
    {"AnIgnoredFrameLeavesOtherPagesAlone",
     {start(page), commit(page), decide(blank, cancel), finish(), start(other), commit(other), finish()},
     {"finished", "finished"}},
    {"ARestrictedPortIsAProvisionalFailure",
     {request("http://localhost:25/"), decide("http://localhost:25/", allow), start("http://localhost:25/"),
      commit(blank), finish()},
     {"failed provisionally 103"}},
    {"ARestrictedPortIsAFailureThoughAnEmptyFrameWasIgnored",
     {decide(blank, cancel), decide("https://localhost:25/", allow), start("https://localhost:25/"),
      commit(blank), finish()},
     {"failed provisionally 103"}},
    {"ARedirectToAnEmptyPageIsNoRestrictedPort",
     {decide(page, allow), start(page), decide(blank, allow), redirect(), commit(blank), finish()},
     {"finished"}},
    {"AnEmptyPageOfItsOwnIsNoRestrictedPort", {start(blank), commit(blank), finish()}, {"finished"}},
    {"WhatFollowsARestrictedPortIsReported",
     {decide(page, allow), start(page), commit(blank), finish(), start(page), commit(page), finish()},
     {"failed provisionally 103", "finished"}},
    {"AnEmptyPageThatWasTurnedDownIsNotReportedUnderTheNextAddress",
     {request(blank), decide(blank, cancel), request(page), start(page), commit(blank), finish(),
      decide(page, allow), start(page), commit(page), finish()},
     {"finished"}},
};

std::vector<Row> const cancelledLoads = {
    {"AStoppedLoadIsCancelled",
     {start(page), fail(provisional, page, cancelled), finish()},
     {"failed provisionally -999"}},
    {"AStoppedCommittedLoadIsCancelled",
     {start(page), commit(page), fail(committed, page, cancelled), finish()},
     {"failed -999"}},
    {"ALoadThatThePageReplacesIsCancelled",
     {start(page), commit(page), decide(other, allow), fail(committed, page, cancelled), finish(),
      start(other), commit(other), finish()},
     {"failed -999", "finished"}},
    {"AProvisionalLoadThatWeReplaceIsNotReported",
     {request(page), start(page), request(other), fail(provisional, page, cancelled), finish(),
      decide(other, allow), start(other), commit(other), finish()},
     {"finished"}},
    {"ACommittedLoadThatWeReplaceIsNotReported",
     {request(page), start(page), commit(page), request(other), decide(other, allow),
      fail(committed, page, cancelled), finish(), start(other), commit(other), finish()},
     {"finished"}},
    {"ALoadWhoseStartIsHeardOfAfterItsReplacementWasAskedForIsNotReported",
     {request(page), decide(page, allow), request(other), start(other), fail(provisional, page, cancelled),
      finish(), decide(other, allow), start(other), commit(other), finish()},
     {"finished"}},
    {"TheReplacementOfALoadThatIsHeardOfLateIsReported",
     {request(page), decide(page, allow), request(page), start(page), fail(provisional, page, cancelled),
      finish(), decide(page, allow), start(page), fail(provisional, page, refused), finish()},
     {"failed provisionally -1004"}},
    {"AReplacementThatStartsAtOnceIsCancelledLikeAnyOther",
     {request(page), decide(page, allow), request(other), decide(other, allow), start(other),
      fail(provisional, other, cancelled), finish()},
     {"failed provisionally -999"}},
    {"ARequestThatIsReplacedBeforeThePolicyWasAskedHasNotBegun",
     {request(page), request(other), start(other), fail(provisional, other, cancelled), finish()},
     {"failed provisionally -999"}},
    {"AnotherFailureOfAReplacedLoadIsReported",
     {start(page), request(other), fail(provisional, page, refused), finish()},
     {"failed provisionally -1004"}},
    {"TheLoadAfterAReplacedOneIsCancelledLikeAnyOther",
     {start(page), request(other), fail(provisional, page, cancelled), finish(), start(other),
      fail(provisional, other, cancelled), finish()},
     {"failed provisionally -999"}},
    {"ACommittedLoadSurvivesAReplacementThatIsIgnored",
     {start(page), commit(page), request(foreign), decide(foreign, cancel), finish()},
     {"finished"}},
    {"AfterAnIgnoredReplacementACancellationIsReported",
     {start(page), commit(page), request(foreign), decide(foreign, cancel), fail(committed, page, cancelled),
      finish()},
     {"failed -999"}},
    {"AJumpWithinThePageReplacesNothing",
     {start(page), commit(page), request(page + "#here"), fail(committed, page, cancelled), finish()},
     {"failed -999"}},
    {"ALostProcessIsNotReported",
     {start(page), commit(page), terminate(), start(page), commit(page), finish()},
     {"finished"}},
};

std::vector<Row> const lateLoads = {
    {"ALateProvisionalLoadTimesOut",
     {request(page), start(page), timeOut(), fail(provisional, page, cancelled), finish()},
     {"failed provisionally -1001"}},
    {"ALateCommittedLoadTimesOut",
     {request(page), start(page), commit(page), timeOut(), fail(committed, page, cancelled), finish()},
     {"failed -1001"}},
    {"ALoadThatNeverStartedTimesOutAtOnce", {request(page), timeOut()}, {"failed provisionally -1001"}},
    {"ALoadThatNeverStartedTimesOutOnce",
     {request(page), timeOut(), timeOut()},
     {"failed provisionally -1001"}},
    {"ALoadThatStartsAfterItsTimeOutSaysNothingMore",
     {request(page), decide(page, allow), timeOut(), request(other), start(page),
      fail(provisional, page, cancelled), finish(), decide(other, allow), start(other), commit(other),
      finish()},
     {"failed provisionally -1001", "finished"}},
    {"TheLoadAfterOneThatNeverStartedIsReported",
     {request(page), timeOut(), request(page), decide(page, allow), start(page), commit(page), finish()},
     {"failed provisionally -1001", "finished"}},
    {"AFailureOfItsOwnIsNoTimeOut",
     {start(page), timeOut(), fail(provisional, page, refused), finish()},
     {"failed provisionally -1004"}},
    {"APageThatWaitsForAnImageIsNotLate",
     {start(page), commit(page), completeMainResource(), timeOut(), finish()},
     {"finished"}},
    {"ALateLoadThatWeReplaceIsNotReported",
     {start(page), timeOut(), request(other), fail(provisional, page, cancelled), finish(), start(other),
      commit(other), finish()},
     {"finished"}},
    {"ATimeOutOfThePastDoesNotColourTheNextLoad",
     {start(page), timeOut(), fail(provisional, page, cancelled), finish(), start(page),
      fail(provisional, page, cancelled), finish()},
     {"failed provisionally -1001", "failed provisionally -999"}},
};

INSTANTIATE_TEST_SUITE_P(Plain, NavigationTrackerTable, testing::ValuesIn(plainLoads), rowName);
INSTANTIATE_TEST_SUITE_P(Policy, NavigationTrackerTable, testing::ValuesIn(policyLoads), rowName);
INSTANTIATE_TEST_SUITE_P(Cancelled, NavigationTrackerTable, testing::ValuesIn(cancelledLoads), rowName);
INSTANTIATE_TEST_SUITE_P(Late, NavigationTrackerTable, testing::ValuesIn(lateLoads), rowName);

// Whether the time-out is still owed after the events.
struct WaitRow {
    std::string name;
    std::vector<Step> events;
    bool awaits;
};

std::ostream& operator<<(std::ostream& out, WaitRow const& row) {
    return out << row.name;
}

class NavigationTrackerWaitTable : public testing::TestWithParam<WaitRow> {};

TEST_P(NavigationTrackerWaitTable, KnowsWhetherTheMainResourceIsOwed) {
    Driver driver;
    for (auto const& event : GetParam().events)
        event(driver);
    EXPECT_EQ(driver.tracker.awaitsMainResource(), GetParam().awaits);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, NavigationTrackerWaitTable,
    testing::Values(
        WaitRow{"NotBeforeTheFirstRequest", {}, false}, WaitRow{"FromTheRequest", {request(page)}, true},
        WaitRow{"WhileProvisional", {request(page), start(page)}, true},
        WaitRow{"WhileTheDocumentArrives", {start(page), commit(page)}, true},
        WaitRow{"NotForImages", {start(page), commit(page), completeMainResource()}, false},
        WaitRow{"AgainForTheNextLoad", {start(page), completeMainResource(), start(other)}, true},
        WaitRow{"NotAfterTheFinish", {start(page), commit(page), finish()}, false},
        WaitRow{"NotAfterAFailure", {start(page), fail(provisional, page, refused)}, false},
        WaitRow{"ForANewRequestAfterAFailure",
                {start(page), fail(provisional, page, refused), request(page), finish()},
                true},
        WaitRow{"ForTheRequestThatReplacesALoadThatIsHeardOfLate",
                {request(page), decide(page, allow), request(other), start(other),
                 fail(provisional, page, cancelled), finish()},
                true},
        WaitRow{"ForTheRequestThatReplaces",
                {start(page), request(other), fail(provisional, page, cancelled), finish()},
                true},
        WaitRow{"NotForAnIgnoredRequest", {request(page), decide(page, cancel)}, false},
        WaitRow{"ThoughAFrameIsIgnored", {request(page), decide(blank, cancel)}, true},
        WaitRow{"NotForAJumpWithinThePage",
                {start(page), commit(page + "#a"), finish(), request(page + "#b")},
                false},
        WaitRow{
            "ForAJumpIntoAnotherPage", {start(page), commit(page), finish(), request(other + "#b")}, true},
        WaitRow{"NotAfterTheProcessEnded", {request(page), start(page), request(other), terminate()}, false}),
    rowName);

TEST(NavigationTracker, AsksOnceForANewWindowThatIsAllowed) {
    NavigationTracker tracker;
    tracker.newWindowAllowed(page);
    EXPECT_FALSE(tracker.takeAllowedNewWindow(other));
    EXPECT_TRUE(tracker.takeAllowedNewWindow(page));
    EXPECT_FALSE(tracker.takeAllowedNewWindow(page));
}

TEST(NavigationTracker, ForgetsAllowedWindowsWithTheirPage) {
    NavigationTracker tracker;
    tracker.newWindowAllowed(page);
    tracker.started(other);
    EXPECT_EQ(tracker.committed(other).kind, NavigationReport::Kind::Nothing);
    EXPECT_FALSE(tracker.takeAllowedNewWindow(page));
}

TEST(NavigationTracker, CarriesTheErrorItWasGiven) {
    NavigationTracker tracker;
    tracker.started(page);
    auto const report = tracker.failed(provisional, page, refused);
    EXPECT_EQ(report.error.domain, "NSURLErrorDomain");
    EXPECT_EQ(report.error.localizedDescription, "refused");
}

} // namespace

} // namespace fcp::test
