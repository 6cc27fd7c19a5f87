#include "Contract/TestBus.h"
#include "Workbench/HostEditor/ProgramFixture.h"
#include "Workbench/HostEditor/WaitUntil.h"

#include <cerrno>
#include <cstdlib>
#include <set>

namespace workbench {
namespace {

bool isGone(pid_t process) {
    return kill(process, 0) != 0 && errno == ESRCH;
}

TEST_F(Program, ExplainsItselfWithoutADisplay) {
    RunningProgram help{command({"--help"}), {"DISPLAY"}};
    EXPECT_EQ(help.waitForEnd(), 0);
    EXPECT_EQ(help.output().rfind("Usage: zelvix-workbench ", 0), 0U);
    RunningProgram version{command({"--version"}), {"DISPLAY"}};
    EXPECT_EQ(version.waitForEnd(), 0);
    EXPECT_EQ(version.output().rfind("zelvix-workbench ", 0), 0U);
}

TEST_F(Program, RefusesWhatItDoesNotUnderstand) {
    RunningProgram program{command({"--speed"}), {"DISPLAY"}};
    EXPECT_EQ(program.waitForEnd(), 2);
    EXPECT_EQ(program.output(), "zelvix-workbench: unknown option --speed; --help shows what it takes\n");
}

TEST_F(Program, SaysThatThereIsNoDisplay) {
    RunningProgram program{command({film()}), {"DISPLAY", "WAYLAND_DISPLAY"}};
    EXPECT_EQ(program.waitForEnd(), 1);
    EXPECT_NE(program.output().find("there is no display"), std::string::npos) << program.output();
}

TEST_F(Program, TellsWhatItDoesAndEndsWithoutATrace) {
    RunningProgram program{quiet({film()})};
    EXPECT_TRUE(program.waitFor("opened film.mp4: 90 frames at 30000/1001 in ")) << program.output();
    EXPECT_TRUE(program.waitFor("panel loaded from "));
    EXPECT_TRUE(isThere(Marker));
    endCleanly(program);
    EXPECT_FALSE(isThere(Marker));
}

TEST_F(Program, TakesItsMarkerAlongWhateverEndsIt) {
    for (auto const signal : {SIGINT, SIGTERM, SIGHUP}) {
        RunningProgram program{quiet({film()})};
        ASSERT_TRUE(program.waitFor("window shown")) << program.output();
        EXPECT_TRUE(isThere(Marker));
        endCleanly(program, signal);
        EXPECT_FALSE(isThere(Marker)) << signal;
    }
}

TEST_F(Program, EndsWhenItsWindowIsClosed) {
    RunningProgram program{quiet({film()}), {"FAKE_PANEL_CLOSE=1"}};
    EXPECT_EQ(program.waitForEnd(), 0) << program.output();
}

TEST_F(Program, NamesAMarkerThatItFindsAndLeavesIt) {
    {
        std::ofstream const made{Marker};
    }
    RunningProgram program{quiet({})};
    EXPECT_TRUE(program.waitFor("/tmp/zelvix-fcp-dev was there already"));
    endCleanly(program);
    EXPECT_TRUE(isThere(Marker));
    std::filesystem::remove(Marker);
}

TEST_F(Program, LeavesTheMarkersAloneInProduction) {
    RunningProgram program{quiet({"--production", film()})};
    ASSERT_TRUE(program.waitFor("panel loaded from ")) << program.output();
    EXPECT_FALSE(isThere(Marker));
    endCleanly(program);
}

TEST_F(Program, GivesThePanelItsHost) {
    RunningProgram program{quiet({film()})};
    EXPECT_TRUE(program.waitFor("panel: begins with film.mp4 of 90090/30000 on the main thread\n"))
        << program.output();
    endCleanly(program);
}

TEST_F(Program, TellsThePanelOnceForEachFrameThatItShows) {
    RunningProgram program{quiet({film()})};
    ASSERT_TRUE(program.waitFor("panel loaded from ")) << program.output();
    runCommand("xdotool key space");
    ASSERT_TRUE(program.waitFor("panel: playhead 89089/30000")) << program.output();
    endCleanly(program);
    std::set<std::string> distinct;
    auto const lines = program.linesWith("panel: playhead");
    for (auto const& line : lines) {
        EXPECT_TRUE(distinct.insert(line).second) << line;
        EXPECT_NE(line.find("on the main thread"), std::string::npos) << line;
    }
    EXPECT_GT(lines.size(), 20U);
}

TEST_F(Program, TellsThePanelFromAnotherThreadWhenAskedTo) {
    RunningProgram program{quiet({"--observer-thread", film()})};
    ASSERT_TRUE(program.waitFor("panel loaded from ")) << program.output();
    runCommand("xdotool key Right Right");
    EXPECT_TRUE(program.waitFor("panel: playhead 2002/30000 on the other thread")) << program.output();
    endCleanly(program);
}

TEST_F(Program, MovesThePlayheadWhereThePanelAsks) {
    RunningProgram program{quiet({film()}), {"FAKE_PANEL_SEEK=1001/600"}};
    // 1.668 s lies one tick before frame 50.
    EXPECT_TRUE(program.waitFor("panel: playhead 50050/30000 on the main thread\n")) << program.output();
    endCleanly(program);
}

TEST_F(Program, GoesOnWithTheFilesThatCanBeOpened) {
    auto const damaged = media->write("noise.mp4", noise(20'000));
    RunningProgram program{quiet({"/nowhere/a.mp4", damaged.string(), film()})};
    EXPECT_TRUE(program.waitFor("panel: begins with film.mp4")) << program.output();
    endCleanly(program);
    EXPECT_EQ(program.linesWith("cannot open"),
              (std::vector<std::string>{"zelvix-workbench: cannot open /nowhere/a.mp4: there is no such file",
                                        "zelvix-workbench: cannot open " + damaged.string() +
                                            ": it is no media file, or a damaged one"}));
}

TEST_F(Program, IsAnEmptyEditorWithAPanelWhenNothingCanBeOpened) {
    RunningProgram program{quiet({"/nowhere/a.mp4"})};
    EXPECT_TRUE(program.waitFor("panel: begins with none on the main thread\n")) << program.output();
    runCommand("xdotool key space Right End");
    endCleanly(program);
}

TEST_F(Program, WorksWithoutAPanelModule) {
    RunningProgram program{command({"--panel", "/nowhere/panel.so", "--no-page", "--no-container", film()})};
    EXPECT_TRUE(program.waitFor("zelvix-workbench: no panel: /nowhere/panel.so is missing\n"))
        << program.output();
    endCleanly(program);
}

TEST_F(Program, SaysWhyAFileIsNoPanelModule) {
    auto const text = media->write("panel.so", "no module");
    RunningProgram program{command({"--panel", text.string(), "--no-page", "--no-container"})};
    EXPECT_TRUE(program.waitFor("no panel: " + text.string())) << program.output();
    endCleanly(program);
    RunningProgram library{command({"--panel", LIBRARY_WITHOUT_PANEL, "--no-page", "--no-container"})};
    EXPECT_TRUE(library.waitFor("is no panel module: ")) << library.output();
    endCleanly(library);
}

TEST_F(Program, ServesThePageBeforeItLoadsThePanel) {
    RunningProgram program{command({"--panel", FAKE_PANEL, "--no-container"})};
    ASSERT_TRUE(program.waitFor("panel: begins with")) << program.output();
    EXPECT_LT(program.output().find("review page served at http://localhost:3000/fcp-panel/login"),
              program.output().find("panel: begins with"));
    endCleanly(program);
}

TEST_F(Program, LoadsNoPanelWhenSomebodyElseHasThePort) {
    Stranger const stranger;
    ASSERT_TRUE(stranger.isListening);
    RunningProgram program{command({"--panel", FAKE_PANEL, "--no-container", film()})};
    ASSERT_TRUE(program.waitFor("window shown")) << program.output();
    EXPECT_TRUE(program.waitFor("panel is not loaded")) << program.output();
    endCleanly(program);
    EXPECT_TRUE(program.linesWith("panel: ").empty()) << program.output();
    EXPECT_NE(program.output().find("--no-page"), std::string::npos) << program.output();
}

TEST_F(Program, LoadsThePanelFromSomebodyElseWhenAskedTo) {
    Stranger const stranger;
    ASSERT_TRUE(stranger.isListening);
    RunningProgram program{command({"--panel", FAKE_PANEL, "--no-container", "--no-page"})};
    EXPECT_TRUE(program.waitFor("panel: begins with")) << program.output();
    endCleanly(program);
}

pid_t containerOf(RunningProgram const& program, std::size_t which) {
    auto const lines = program.linesWith("container started, pid ");
    if (lines.size() <= which)
        return -1;
    return std::atoi(lines[which].c_str() + lines[which].rfind(' '));
}

TEST_F(Program, StartsItsContainerAndEndsIt) {
    RunningProgram program{command({"--panel", FAKE_PANEL, "--no-page", film()})};
    ASSERT_TRUE(program.waitForLines("container answers on the bus", 1)) << program.output();
    auto const first = containerOf(program, 0);
    ASSERT_GT(first, 0);
    kill(first, SIGKILL);
    ASSERT_TRUE(program.waitForLines("container answers on the bus", 2)) << program.output();
    auto const second = containerOf(program, 1);
    EXPECT_FALSE(isGone(second));
    endCleanly(program);
    EXPECT_TRUE(isGone(first));
    EXPECT_TRUE(isGone(second));
}

TEST_F(Program, TellsWhoIsConnectedToTheRealPanel) {
    RunningProgram program{command({"--panel", REAL_PANEL, film()})};
    EXPECT_TRUE(program.waitFor("host connected, page connected, container connected\n")) << program.output();
    EXPECT_FALSE(program.linesWith("host connected, page away").empty()) << program.output();
    kill(containerOf(program, 0), SIGKILL);
    EXPECT_TRUE(program.waitFor("host connected, page connected, container away\n")) << program.output();
    endCleanly(program);
}

TEST_F(Program, LeavesNothingBehindWhenItIsKilled) {
    RunningProgram program{command({"--panel", FAKE_PANEL, "--no-page", film()})};
    ASSERT_TRUE(program.waitForLines("container answers on the bus", 1)) << program.output();
    auto const container = containerOf(program, 0);
    program.signal(SIGKILL);
    EXPECT_EQ(program.waitForEnd(), 128 + SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return isGone(container) && !isThere(Marker); }));
}

TEST_F(Program, OutlivesItsBus) {
    fcp::test::TestBus bus;
    bus.start();
    RunningProgram program{quiet({film()}), {"DBUS_SESSION_BUS_ADDRESS=" + bus.address()}};
    ASSERT_TRUE(program.waitFor("panel loaded from ")) << program.output();
    bus.kill();
    runCommand("xdotool key Right");
    EXPECT_TRUE(program.waitFor("panel: playhead 1001/30000")) << program.output();
    runCommand("xdotool key Right");
    EXPECT_TRUE(program.waitFor("panel: playhead 2002/30000")) << program.output();
    endCleanly(program);
}

TEST_F(Program, RunsWithoutABus) {
    RunningProgram program{quiet({film()}), {"DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere/bus"}};
    EXPECT_TRUE(program.waitFor("panel: begins with film.mp4")) << program.output();
    endCleanly(program);
}

} // namespace
} // namespace workbench
