#include "Platform/Cocoa/CocoaLogSystem.h"

#include "Cocoa/RecordedLog.h"

#include <gtest/gtest.h>

#include <thread>

namespace fcp::test {

namespace {

using Lines = std::vector<LoggedLine>;

constexpr int info = 1;
constexpr int debug = 2;
constexpr int error = 16;

class CocoaLogTest : public testing::Test {
protected:
    ~CocoaLogTest() override { (void)takeLoggedLines(); }

    CocoaLogSystem system;
    std::shared_ptr<Log> log = system.makeLog("ai.zelvix.fcp.extension", "ViewController");
};

LoggedLine line(int type, std::string text) {
    return {"ai.zelvix.fcp.extension", "ViewController", type, std::move(text)};
}

TEST_F(CocoaLogTest, WritesPublicLinesOfEachLevelUnderSubsystemAndCategory) {
    log->debug("navigate policy: about:blank");
    log->info("loadView");
    log->error("showError: gone");
    EXPECT_EQ(takeLoggedLines(), (Lines{line(debug, "navigate policy: about:blank"), line(info, "loadView"),
                                        line(error, "showError: gone")}));
}

TEST_F(CocoaLogTest, TakesPercentSignsAndLineFeedsAsText) {
    log->error("100%s %n %@\nhttp://a/%20");
    EXPECT_EQ(takeLoggedLines(), Lines{line(error, "100%s %n %@\nhttp://a/%20")});
}

TEST_F(CocoaLogTest, WritesBytesThatAreNoTextAsReplacements) {
    log->info("a\xff"
              "b");
    EXPECT_EQ(takeLoggedLines(), Lines{line(info, "a\ufffd"
                                                  "b")});
}

TEST_F(CocoaLogTest, TheDefaultLogHasNeitherSubsystemNorCategory) {
    system.defaultLog().error("Load timed out after 30s");
    EXPECT_EQ(takeLoggedLines(), (Lines{{"", "", error, "Load timed out after 30s"}}));
}

TEST_F(CocoaLogTest, IsWrittenToFromAnyThread) {
    std::thread([this] { log->info("from elsewhere"); }).join();
    EXPECT_EQ(takeLoggedLines(), Lines{line(info, "from elsewhere")});
}

} // namespace

} // namespace fcp::test
