#include "Workbench/HostEditor/WindowState.h"

#include "Workbench/HostEditor/Clips.h"
#include "Workbench/HostEditor/RecentFiles.h"
#include "Workbench/HostEditor/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

WindowState const sample{.size = PixelSize{1111, 777},
                         .isMaximized = true,
                         .panelWidth = 333,
                         .magnification = 2.5,
                         .recentFiles = {"/films/a;b.mp4", "/films/Schöner Film\n2.mlt"}};

class State : public testing::Test {
protected:
    TemporaryFolder folder;
    std::filesystem::path const file = folder.path / "new" / "state.ini";
};

TEST_F(State, IsFoundAgain) {
    EXPECT_EQ(writeWindowState(file, sample), "");
    auto const found = readWindowState(file);
    EXPECT_EQ(found.problem, "");
    EXPECT_EQ(found.state, sample);
}

TEST_F(State, IsEmptyAtFirst) {
    auto const found = readWindowState(file);
    EXPECT_EQ(found.problem, "");
    EXPECT_EQ(found.state, WindowState{});
}

TEST_F(State, IsLeftOutWithOneLineWhenItIsBroken) {
    for (auto const& content : {std::string{"[window\nwidth=1"}, std::string{"width=100\n"}, noise(5000)}) {
        auto const broken = folder.write("state.ini", content);
        auto const found = readWindowState(broken);
        EXPECT_EQ(found.state, WindowState{});
        EXPECT_EQ(found.problem.rfind("the window begins anew: " + broken.string() + ": ", 0), 0U);
        EXPECT_EQ(found.problem.find('\n'), std::string::npos);
    }
}

TEST_F(State, TakesWhatMakesSense) {
    auto const odd =
        folder.write("state.ini", "[window]\nwidth=-5\nheight=700\npanel=abc\nmaximized=perhaps\n"
                                  "magnification=nan\n[files]\nrecent=/a.mp4;\n");
    auto const found = readWindowState(odd);
    EXPECT_EQ(found.problem, "");
    EXPECT_EQ(found.state, (WindowState{.size = {}, .panelWidth = {}, .recentFiles = {"/a.mp4"}}));
}

TEST_F(State, SaysWhyItCannotBeKept) {
    folder.write("new", "a file where a folder is wanted");
    EXPECT_EQ(writeWindowState(file, sample).rfind("the window's state is not kept: ", 0), 0U);
}

TEST(RecentFiles, HoldTheNewestFirstAndEachOnce) {
    RecentFiles files{{"/b", "", "/c", "/b"}};
    EXPECT_EQ(files.paths(), (std::vector<std::string>{"/b", "/c"}));
    files.add("/a");
    files.add("/c");
    EXPECT_EQ(files.paths(), (std::vector<std::string>{"/c", "/a", "/b"}));
}

TEST(RecentFiles, ForgetTheOldest) {
    RecentFiles files;
    for (int number = 0; number < 20; ++number)
        files.add("/" + std::to_string(number));
    EXPECT_EQ(files.paths().size(), RecentFiles::Most);
    EXPECT_EQ(files.paths().front(), "/19");
    EXPECT_EQ(files.paths().back(), "/8");
}

} // namespace
} // namespace workbench
