#include "Workbench/HostEditor/Clips.h"
#include "Workbench/HostEditor/RunningProgram.h"
#include "Workbench/HostEditor/TemporaryFolder.h"

#include <glibmm/convert.h>
#include <gtest/gtest.h>

#include <csignal>

namespace workbench {
namespace {

// From another program's window, with the mouse, as from a file manager's.
TEST(Drag, OntoTheWindowOpensTheFiles) {
    TemporaryFolder const media;
    makeClip(media.path / "film.mp4", {30000, 1001}, 30);
    makeClip(media.path / "Über den Fluß.mp4", {25, 1}, 25);
    RunningProgram program{
        {WORKBENCH_PROGRAM, "--panel", FAKE_PANEL, "--production", "--no-page", "--no-container"}};
    ASSERT_TRUE(program.waitFor("window shown")) << program.output();
    // Without a window manager both windows are in the corner, the later one above.
    RunningProgram source{{DRAG_SOURCE, Glib::filename_to_uri(media.path / "film.mp4"),
                           Glib::filename_to_uri(media.path / "Über den Fluß.mp4")}};
    runCommand("xdotool mousemove 60 40");
    ASSERT_TRUE(source.waitFor("entered")) << source.output();
    runCommand("xdotool mousedown 1 mousemove 90 60");
    ASSERT_TRUE(source.waitFor("begun")) << source.output();
    // In one step: with each the other window is asked anew, and a drop is refused until it has answered.
    runCommand("xdotool mousemove 600 400");
    ASSERT_TRUE(source.waitFor("welcome")) << source.output();
    runCommand("xdotool mouseup 1");
    EXPECT_TRUE(program.waitFor("opened film.mp4: 30 frames at 30000/1001 in ")) << program.output();
    EXPECT_TRUE(program.waitFor("opened Über den Fluß.mp4: 25 frames at 25/1 in ")) << program.output();
    EXPECT_TRUE(source.waitFor("ended")) << source.output();
    EXPECT_TRUE(source.linesWith("refused").empty()) << source.output();
    program.signal(SIGTERM);
    EXPECT_EQ(program.waitForEnd(), 0) << program.output();
}

} // namespace
} // namespace workbench
