// The panel over a long day: what it takes, it gives back.

#include "PanelHarness.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <cstddef>

namespace fcp::test {

namespace {

constexpr std::size_t kilobyte = 1024;

// What is allocated in this process at this moment.
std::size_t heapInUse() {
    return mallinfo2().uordblks;
}

std::size_t growth(std::size_t before, std::size_t after) {
    return after > before ? after - before : 0;
}

void openAndClose(int panels) {
    for (int count = 0; count < panels; ++count) {
        PanelHarness panel;
        panel.connect();
        panel.post({{"command", "clearAllMarkers"}});
        ASSERT_EQ(panel.ask({{"command", "isFCPRunning"}}), true);
    }
}

// Sends many requests from the page, and returns when the last one is answered.
void askManyTimes(PanelHarness& panel, int thousands) {
    for (int count = 0; count < thousands; ++count) {
        panel.inPage("for (let i = 0; i < 1000; ++i) webkit.messageHandlers.fcpBridge.postMessage("
                     "{command: 'getTimeline', resolveId: 'soak-' + i}); heard.length = 0;");
        ASSERT_TRUE(panel.waitForEvent("fcp:resolve", 1000));
        panel.journal.take(); // the doubles note every call
    }
}

void movePlayhead(PanelHarness& panel, int thousands) {
    for (int count = 0; count < thousands; ++count) {
        panel.inPage("heard.length = 0;");
        for (int i = 0; i < 1000; ++i)
            panel.timeline().notifyPlayhead(i);
        ASSERT_TRUE(panel.waitForEvent("fcp:playhead-changed", 1000));
        panel.journal.take();
    }
}

TEST(PanelSoak, GivesBackWhatEachOfManyPanelsTook) {
    openAndClose(20);
    auto const before = heapInUse();
    openAndClose(400);
    EXPECT_LT(growth(before, heapInUse()), 64 * kilobyte);
}

TEST(PanelSoak, KeepsNothingOfManyRequestsAndNotifications) {
    PanelHarness panel;
    panel.connect();
    askManyTimes(panel, 5);
    movePlayhead(panel, 5);
    panel.mainLoop.elapse(Seconds(61));
    auto const before = heapInUse();
    askManyTimes(panel, 200);
    movePlayhead(panel, 200);
    panel.mainLoop.elapse(Seconds(61));
    EXPECT_LT(growth(before, heapInUse()), 64 * kilobyte);
}

} // namespace

} // namespace fcp::test
