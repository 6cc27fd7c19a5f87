#include "Workbench/HostEditor/ContainerLauncher.h"

#include "Workbench/HostEditor/BusFixture.h"
#include "Workbench/HostEditor/ContainerName.h"
#include "Workbench/HostEditor/Journal.h"
#include "Workbench/HostEditor/TemporaryFolder.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <iterator>
#include <optional>

namespace workbench {
namespace {

class Launcher : public BusTest {
protected:
    Launcher() {
        setenv("FAKE_CONTAINER_LOG", log.c_str(), 1);
        setenv("FAKE_CONTAINER_MANNER", "stays", 1);
    }

    void launch(std::filesystem::path const& program = FAKE_CONTAINER) {
        launcher.emplace(bus, journal, program);
    }

    bool waitForChild() {
        auto const asker = stranger();
        return waitUntil([&] { return launcher->child() && isOwned(asker, ContainerName); });
    }

    [[nodiscard]] std::ptrdiff_t starts() const {
        std::ifstream stream{log};
        return std::count(std::istreambuf_iterator<char>{stream}, {}, '\n');
    }

    static bool isGone(pid_t process) { return kill(process, 0) != 0 && errno == ESRCH; }

    TemporaryFolder folder;
    std::filesystem::path log = folder.path / "starts";
    Journal journal;
    SessionBus bus;
    std::optional<ContainerLauncher> launcher;
};

TEST_F(Launcher, StartsAContainerWhereThereIsNoneAndEndsIt) {
    launch();
    ASSERT_TRUE(waitForChild());
    auto const child = *launcher->child();
    EXPECT_FALSE(isGone(child));
    launcher.reset();
    EXPECT_TRUE(isGone(child));
    EXPECT_EQ(starts(), 1);
}

TEST_F(Launcher, LeavesAContainerOfSomebodyElseAlone) {
    auto const owner = stranger();
    Glib::Variant<guint32> const noFlags = Glib::Variant<guint32>::create(0);
    call(owner, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
         Glib::VariantContainerBase::create_tuple(
             {Glib::Variant<Glib::ustring>::create(ContainerName), noFlags}));
    launch();
    EXPECT_FALSE(waitUntil([this] { return launcher->child().has_value(); }, 500));
    EXPECT_EQ(starts(), 0);
    // When it leaves, its place is taken.
    owner->close_sync();
    EXPECT_TRUE(waitForChild());
}

TEST_F(Launcher, StartsANewContainerWhenItsOwnIsKilled) {
    launch();
    ASSERT_TRUE(waitForChild());
    auto const first = *launcher->child();
    kill(first, SIGKILL);
    ASSERT_TRUE(waitUntil([&] { return launcher->child() && *launcher->child() != first; }));
    EXPECT_TRUE(waitForChild());
    EXPECT_EQ(starts(), 2);
}

TEST_F(Launcher, WaitsLongerEachTimeForAContainerThatDoesNotStay) {
    setenv("FAKE_CONTAINER_MANNER", "leaves", 1);
    launch();
    auto const begin = g_get_monotonic_time();
    ASSERT_TRUE(waitUntil([this] { return starts() == 4; }));
    // A quarter, a half and a whole second lie between them.
    EXPECT_GE(g_get_monotonic_time() - begin, 1'600'000);
    EXPECT_FALSE(waitUntil([this] { return starts() > 4; }, 1000));
}

TEST_F(Launcher, ShowsNoWindowAgainThatTheUserHasClosed) {
    setenv("FAKE_CONTAINER_MANNER", "is closed", 1);
    launch();
    ASSERT_TRUE(waitForChild());
    std::ifstream stream{log};
    std::string const starts{std::istreambuf_iterator<char>{stream}, {}};
    EXPECT_EQ(starts, "started \nstarted --no-window\n");
}

TEST_F(Launcher, EndsAContainerThatDoesNotListen) {
    setenv("FAKE_CONTAINER_MANNER", "stubborn", 1);
    launch();
    ASSERT_TRUE(waitForChild());
    auto const child = *launcher->child();
    launcher.reset();
    EXPECT_TRUE(isGone(child));
}

TEST_F(Launcher, SaysThatItsProgramIsMissing) {
    testing::internal::CaptureStderr();
    launch(folder.path / "nothing");
    EXPECT_FALSE(waitUntil([this] { return launcher->child().has_value(); }, 500));
    auto const said = testing::internal::GetCapturedStderr();
    EXPECT_NE(said.find("cannot start the container: "), std::string::npos) << said;
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
}

TEST_F(Launcher, StartsAnotherContainerAfterTheBusIsBack) {
    launch();
    ASSERT_TRUE(waitForChild());
    auto const first = *launcher->child();
    daemon.kill();
    ASSERT_TRUE(waitUntil([this] { return !launcher->child(); }));
    daemon.start();
    ASSERT_TRUE(waitForChild());
    EXPECT_NE(*launcher->child(), first);
}

TEST(LauncherWithoutABus, WaitsForOne) {
    Gio::init();
    fcp::test::TestBus daemon;
    TemporaryFolder const folder;
    setenv("FAKE_CONTAINER_LOG", (folder.path / "starts").c_str(), 1);
    setenv("FAKE_CONTAINER_MANNER", "stays", 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", daemon.address().c_str(), 1);
    Journal const journal;
    SessionBus bus;
    testing::internal::CaptureStderr();
    ContainerLauncher const launcher{bus, journal, FAKE_CONTAINER};
    EXPECT_NE(testing::internal::GetCapturedStderr().find("no session bus"), std::string::npos);
    daemon.start();
    EXPECT_TRUE(waitUntil([&] { return launcher.child().has_value(); }));
}

} // namespace
} // namespace workbench
