#include "FcpExtension/HostNotificationQueue.h"

#include "Doubles/FakeMainLoop.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace fcp::test {

namespace {

class HostNotificationQueueTest : public testing::Test {
protected:
    void run(int number) {
        queue->run([this, number] { ran.push_back(number); });
    }

    void runElsewhere(int number) {
        std::thread([this, number] { run(number); }).join();
    }

    FakeMainLoop loop;
    std::shared_ptr<HostNotificationQueue> const queue = std::make_shared<HostNotificationQueue>(loop);
    std::vector<int> ran;
};

TEST_F(HostNotificationQueueTest, RunsAtOnceOnTheMainThread) {
    run(1);
    EXPECT_EQ(ran, std::vector{1});
}

TEST_F(HostNotificationQueueTest, HopsFromAnotherThread) {
    runElsewhere(1);
    EXPECT_EQ(ran, std::vector<int>{});
    loop.runPosted();
    EXPECT_EQ(ran, std::vector{1});
}

TEST_F(HostNotificationQueueTest, JoinsTheQueueOnTheMainThreadWhileEarlierOnesWait) {
    runElsewhere(1);
    run(2);
    EXPECT_EQ(ran, std::vector<int>{});
    loop.runPosted();
    EXPECT_EQ(ran, (std::vector{1, 2}));
    run(3);
    EXPECT_EQ(ran, (std::vector{1, 2, 3}));
}

TEST_F(HostNotificationQueueTest, KeepsTheOrderOfABurstFromAnotherThread) {
    std::thread host([this] {
        for (int number = 0; number < 20'000; ++number)
            run(number);
    });
    while (ran.size() < 20'000)
        loop.runPosted();
    host.join();
    for (int number = 0; number < 20'000; ++number)
        ASSERT_EQ(ran[static_cast<std::size_t>(number)], number);
}

} // namespace

} // namespace fcp::test
