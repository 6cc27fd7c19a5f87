#include "Platform/Gtk/SdBusSource.h"
#include "Contract/TurnUntil.h"
#include "Platform/Gtk/SdBusPointers.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <functional>
#include <memory>

using fcp::SdBusPointer;
using fcp::SdBusSource;
using fcp::test::turnUntil;
using fcp::test::turnWhileReady;

namespace {

// A connection whose far end is silent.
class SdBusSourceTest : public testing::Test, protected SdBusSource::Client {
public:
    ~SdBusSourceTest() override { close(ends[1]); }

protected:
    SdBusSourceTest() {
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends), 0);
        sd_bus* opened = nullptr;
        EXPECT_GE(sd_bus_new(&opened), 0);
        bus.reset(opened);
        EXPECT_GE(sd_bus_set_fd(opened, ends[0], ends[0]), 0);
        EXPECT_GE(sd_bus_start(opened), 0);
        source = std::make_unique<SdBusSource>(*bus, static_cast<SdBusSource::Client&>(*this));
    }

    int step() override {
        ++steps;
        return onStep();
    }

    void busIsGone() override {
        ++losses;
        source.reset();
    }

    int ends[2] = {-1, -1};
    SdBusPointer bus;
    std::unique_ptr<SdBusSource> source;
    std::function<int()> onStep = [] { return 0; };
    int steps = 0;
    int losses = 0;
};

TEST_F(SdBusSourceTest, RestsWhileNothingHappens) {
    turnWhileReady();
    auto const before = steps;
    turnWhileReady();
    EXPECT_EQ(steps, before);
}

TEST_F(SdBusSourceTest, WakesWhenSomethingArrives) {
    turnWhileReady();
    auto const before = steps;
    ASSERT_EQ(write(ends[1], "DATA\r\n", 6), 6);
    EXPECT_TRUE(turnUntil([&] { return steps > before; }));
}

TEST_F(SdBusSourceTest, TakesTurnsWithTheLowestPrioritiesWhenItsWorkNeverEnds) {
    onStep = [] { return 1; };
    int turns = 0;
    auto const idle = g_idle_add_full(
        G_PRIORITY_LOW,
        [](gpointer count) -> gboolean {
            ++*static_cast<int*>(count);
            return G_SOURCE_CONTINUE;
        },
        &turns, nullptr);
    ASSERT_EQ(write(ends[1], "DATA\r\n", 6), 6);
    for (int i = 0; i < 20; ++i)
        g_main_context_iteration(nullptr, TRUE);
    EXPECT_GE(turns, 9);
    EXPECT_GT(steps, 9);
    g_source_remove(idle);
}

TEST_F(SdBusSourceTest, ReportsALossOnceAndIsThenSilent) {
    onStep = [] { return -1; };
    ASSERT_EQ(write(ends[1], "DATA\r\n", 6), 6);
    EXPECT_TRUE(turnUntil([this] { return losses > 0; }));
    turnWhileReady();
    EXPECT_EQ(losses, 1);
    EXPECT_EQ(steps, 1);
}

TEST_F(SdBusSourceTest, MayBeDestroyedByAStep) {
    onStep = [this] {
        source.reset();
        return 1;
    };
    ASSERT_EQ(write(ends[1], "DATA\r\n", 6), 6);
    EXPECT_TRUE(turnUntil([this] { return source == nullptr; }));
    turnWhileReady();
    EXPECT_EQ(steps, 1);
}

TEST_F(SdBusSourceTest, FindsOutThatTheConnectionIsClosed) {
    onStep = [this] { return sd_bus_process(bus.get(), nullptr); };
    turnWhileReady();
    sd_bus_close(bus.get());
    EXPECT_TRUE(turnUntil([this] { return losses == 1; }));
}

} // namespace
