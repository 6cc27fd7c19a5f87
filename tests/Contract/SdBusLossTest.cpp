#include "Contract/BareBusClient.h"
#include "Contract/TestBus.h"
#include "Contract/TurnUntil.h"
#include "Doubles/FakeMainLoop.h"
#include "Platform/Gtk/SdBusNotificationCenter.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

using fcp::Json;
using fcp::Notification;
using fcp::SdBusNotificationCenter;
using fcp::Seconds;
using fcp::test::turnUntil;
using fcp::test::turnWhileReady;

namespace {

std::string const response = "com.zelvix.fcp.containerResponse";

class SdBusLoss : public testing::Test {
protected:
    void connect() {
        center = std::make_unique<SdBusNotificationCenter>(loop, bus.address());
        center->observe(response, [this](Notification const& notification) {
            heard.push_back(notification.userInfo->value("n", -1));
        });
    }

    // Posts to itself, until it hears itself or the bus is found to be lost.
    void post(int number) const { center->post(response, {{"n", number}}); }

    void postMoreThanASocketTakes() const {
        Json userInfo{{"text", std::string(1024, 'x')}};
        for (int n = 1; n <= count; ++n) {
            userInfo["n"] = n;
            center->post(response, userInfo);
        }
    }

    [[nodiscard]] bool hears(int number) {
        return turnUntil([this, number] { return std::ranges::find(heard, number) != heard.end(); });
    }

    [[nodiscard]] bool noticesTheLoss() {
        return turnUntil([this] { return loop.pending() == 1; });
    }

    // How long the next attempt is still to be waited for; none while there is a connection or one is made.
    [[nodiscard]] std::optional<Seconds> pause() const {
        for (auto const& [delay, done] : loop.deadlines())
            if (!done)
                return delay;
        return {};
    }

    // The pause after each of the next attempts, each of which fails.
    [[nodiscard]] std::vector<double> pauses(std::size_t attempts) {
        std::vector<double> found;
        while (found.size() < attempts && noticesTheLoss()) {
            found.push_back(pause().value().count());
            loop.advance(pause().value());
        }
        return found;
    }

    [[nodiscard]] static std::ptrdiff_t openDescriptors() {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    }

    static constexpr int count = 15'000;

    fcp::test::TestBus bus;
    fcp::test::FakeMainLoop loop;
    std::unique_ptr<SdBusNotificationCenter> center;
    std::vector<int> heard;
};

// A socket in the bus's place.
class Listener {
public:
    explicit Listener(std::string const& path)
        : descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(bind(descriptor, reinterpret_cast<sockaddr const*>(&address), sizeof address), 0);
        EXPECT_EQ(listen(descriptor, 8), 0);
    }

    ~Listener() { close(descriptor); }

    Listener(Listener const&) = delete;
    Listener& operator=(Listener const&) = delete;

    // Accepts and closes at once; false when nobody has knocked.
    [[nodiscard]] bool turnAway() const {
        int const caller = accept(descriptor, nullptr, nullptr);
        if (caller < 0)
            return false;
        close(caller);
        return true;
    }

private:
    int descriptor;
};

TEST_F(SdBusLoss, WorksAgainAfterTheBusWasKilledAndStartedAgain) {
    bus.start();
    connect();
    post(1);
    ASSERT_TRUE(hears(1));
    bus.kill();
    ASSERT_TRUE(noticesTheLoss());
    bus.start();
    loop.advance(Seconds(1));
    post(2);
    EXPECT_TRUE(hears(2));
    EXPECT_EQ(heard, (std::vector<int>{1, 2})) << "each observer hears once, on the new bus too";
}

TEST_F(SdBusLoss, DropsWhatIsPostedWhileTheBusIsLost) {
    bus.start();
    connect();
    post(1);
    ASSERT_TRUE(hears(1));
    bus.kill();
    post(2); // before the loss is noticed
    ASSERT_TRUE(noticesTheLoss());
    post(3);
    bus.start();
    post(4);
    loop.advance(Seconds(1));
    post(5);
    ASSERT_TRUE(hears(5));
    EXPECT_EQ(heard, (std::vector<int>{1, 5}));
}

TEST_F(SdBusLoss, HearsAgainWhatItObservedWhileTheBusWasLost) {
    connect();
    int other = 0;
    center->observe("com.zelvix.fcp.other", [&other](Notification const&) { ++other; });
    ASSERT_TRUE(noticesTheLoss());
    bus.start();
    loop.advance(Seconds(1));
    center->post("com.zelvix.fcp.other", Json::object());
    EXPECT_TRUE(turnUntil([&other] { return other == 1; }));
}

TEST_F(SdBusLoss, TriesAgainWithGrowingPausesUpToHalfAMinute) {
    connect();
    EXPECT_EQ(pauses(8), (std::vector<double>{1, 2, 4, 8, 16, 30, 30, 30}));
}

TEST_F(SdBusLoss, GrowsItsPausesToABusThatTurnsItAway) {
    Listener const listener(bus.socketPath());
    connect();
    std::vector<double> found;
    for (int i = 0; i < 4; ++i) {
        ASSERT_TRUE(turnUntil([&listener] { return listener.turnAway(); }));
        ASSERT_TRUE(noticesTheLoss());
        found.push_back(pause().value().count());
        loop.advance(pause().value());
    }
    EXPECT_EQ(found, (std::vector<double>{1, 2, 4, 8}));
}

TEST_F(SdBusLoss, StartsItsPausesAnewAfterABusThatLetItIn) {
    connect();
    ASSERT_EQ(pauses(3), (std::vector<double>{1, 2, 4}));
    bus.start();
    ASSERT_EQ(pauses(1), (std::vector<double>{8}));
    post(1);
    ASSERT_TRUE(hears(1));
    bus.kill();
    EXPECT_EQ(pauses(2), (std::vector<double>{1, 2}));
}

TEST_F(SdBusLoss, TriesAgainWhenTheBusRefusesASubscription) {
    bus.start("<limit name='max_match_rules_per_connection'>1</limit>");
    connect();
    center->observe("com.zelvix.fcp.other", [](Notification const&) {});
    ASSERT_TRUE(noticesTheLoss());
    bus.kill();
    bus.start();
    loop.advance(Seconds(1));
    post(1);
    EXPECT_TRUE(hears(1));
}

TEST_F(SdBusLoss, TakesNoBusAtAllForANormalState) {
    connect();
    post(1);
    center->observe(response, [](Notification const&) {});
    EXPECT_EQ(pause(), Seconds(1));
    center.reset();
    EXPECT_EQ(loop.pending(), 0U) << "an attempt is still owed by nobody";
}

TEST_F(SdBusLoss, MayBeDestroyedWhileTheBusDoesNotGreet) {
    Listener const listener(bus.socketPath());
    auto const before = openDescriptors();
    connect();
    post(1);
    turnWhileReady();
    center.reset();
    turnWhileReady();
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(loop.pending(), 0U);
}

TEST_F(SdBusLoss, LeaksNoDescriptorHoweverOftenTheBusDies) {
    bus.start();
    connect();
    post(0);
    ASSERT_TRUE(hears(0));
    auto const before = openDescriptors();
    for (int round = 1; round <= 5; ++round) {
        bus.kill();
        ASSERT_TRUE(noticesTheLoss());
        bus.start();
        loop.advance(Seconds(1));
        post(round);
        ASSERT_TRUE(hears(round));
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(SdBusLoss, PostsToAStalledBusWithoutWaitingAndInOrder) {
    bus.start();
    connect();
    post(0);
    ASSERT_TRUE(hears(0));
    // Each round finds the room again that the one before it took.
    for (int round = 0; round < 3; ++round) {
        heard.clear();
        bus.stall();
        postMoreThanASocketTakes();
        turnWhileReady();
        EXPECT_TRUE(heard.empty());
        bus.resume();
        ASSERT_TRUE(hears(count));
        ASSERT_EQ(heard.size(), static_cast<std::size_t>(count));
        EXPECT_TRUE(std::ranges::is_sorted(heard));
    }
    EXPECT_EQ(loop.pending(), 0U);
}

TEST_F(SdBusLoss, KeepsNoMoreThanSixtyFourMebibytesForAStalledBus) {
    bus.start();
    connect();
    post(0);
    ASSERT_TRUE(hears(0));
    bus.stall();
    Json large{{"text", std::string(std::size_t{1} << 20, 'x')}};
    constexpr int posts = 120;
    for (int n = 1; n <= posts; ++n) {
        large["n"] = n;
        center->post(response, large);
    }
    bus.resume();
    ASSERT_TRUE(hears(64));
    // There is room again, and what is heard then came after all that was kept.
    ASSERT_TRUE(turnUntil([this] {
        post(1000);
        return heard.back() == 1000;
    }));
    EXPECT_TRUE(std::ranges::is_sorted(heard));
    EXPECT_TRUE(std::ranges::none_of(heard, [](int n) { return n > 100 && n <= posts; }))
        << "the socket holds some 16 MiB, the outbox no more than 64";
}

TEST_F(SdBusLoss, DropsWhatWaitedForABusThatDied) {
    bus.start();
    connect();
    post(0);
    ASSERT_TRUE(hears(0));
    bus.stall();
    postMoreThanASocketTakes();
    bus.kill();
    ASSERT_TRUE(noticesTheLoss());
    bus.start();
    loop.advance(Seconds(1));
    post(-2);
    ASSERT_TRUE(hears(-2));
    EXPECT_EQ(heard, (std::vector<int>{0, -2}));
}

} // namespace
