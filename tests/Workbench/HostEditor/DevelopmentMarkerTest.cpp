#include "Workbench/HostEditor/DevelopmentMarker.h"

#include "Workbench/HostEditor/TemporaryFolder.h"
#include "Workbench/HostEditor/WaitUntil.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

#include <optional>

namespace workbench {
namespace {

class Marker : public testing::Test {
protected:
    [[nodiscard]] bool isThere() const { return std::filesystem::exists(paths.development); }

    void make(DevelopmentMarker::Use use = DevelopmentMarker::Use::Select) { marker.emplace(use, paths); }

    TemporaryFolder folder;
    DevelopmentMarker::Paths paths{folder.path / "dev", folder.path / "diag"};
    std::optional<DevelopmentMarker> marker;
};

TEST_F(Marker, IsThereAsLongAsTheWorkbenchRuns) {
    make();
    EXPECT_TRUE(isThere());
    EXPECT_TRUE(marker->isPresent());
    EXPECT_TRUE(marker->messages().empty());
    marker.reset();
    EXPECT_FALSE(isThere());
}

TEST_F(Marker, OfSomebodyElseIsNamedAndLeft) {
    folder.write("dev", "");
    make();
    EXPECT_TRUE(marker->isPresent());
    ASSERT_EQ(marker->messages().size(), 1U);
    EXPECT_EQ(marker->messages()[0],
              paths.development.string() +
                  " was there already, from another workbench or left over; it is left there at "
                  "the end");
    marker.reset();
    EXPECT_TRUE(isThere());
}

TEST_F(Marker, IsGoneEvenWhenTheWorkbenchIsKilled) {
    auto const workbench = fork();
    if (workbench == 0) {
        make();
        raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(workbench, &status, 0), workbench);
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    EXPECT_TRUE(waitUntil([this] { return !isThere(); }));
}

TEST_F(Marker, IsThereThroughSignalsToTheWholeGroup) {
    auto const workbench = fork();
    if (workbench == 0) {
        setpgid(0, 0); // a group without this test
        for (auto const number : {SIGINT, SIGTERM, SIGHUP})
            signal(number, SIG_IGN);
        make();
        for (auto const number : {SIGINT, SIGTERM, SIGHUP})
            kill(0, number);
        _exit(waitUntil([this] { return !isThere(); }, 300) ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(workbench, &status, 0), workbench);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(waitUntil([this] { return !isThere(); }));
}

TEST_F(Marker, ThatSomebodyElseHasRemovedIsNotMissed) {
    make();
    std::filesystem::remove(paths.development);
    EXPECT_FALSE(marker->isPresent());
    marker.reset();
    EXPECT_FALSE(isThere());
}

TEST_F(Marker, ThatSomebodyElseHasReplacedIsLeft) {
    make();
    // The new file exists before the old one goes, so that it cannot be given the same number.
    folder.write("other", "theirs");
    std::filesystem::rename(folder.path / "other", paths.development);
    marker.reset();
    EXPECT_TRUE(isThere());
}

TEST_F(Marker, IsLeftAloneInProduction) {
    make(DevelopmentMarker::Use::LeaveAlone);
    EXPECT_FALSE(isThere());
    EXPECT_FALSE(marker->isPresent());
    EXPECT_TRUE(marker->messages().empty());
}

TEST_F(Marker, IsNamedInProductionWhenItIsThere) {
    folder.write("dev", "");
    make(DevelopmentMarker::Use::LeaveAlone);
    EXPECT_EQ(marker->messages(),
              (std::vector<std::string>{paths.development.string() +
                                        " is there: the panel loads from this machine all the same"}));
    marker.reset();
    EXPECT_TRUE(isThere());
}

TEST_F(Marker, OfDiagnosisIsNamedBecauseItWins) {
    folder.write("diag", "");
    make();
    EXPECT_EQ(
        marker->messages(),
        (std::vector<std::string>{paths.diagnostic.string() +
                                  " is there and wins: the panel shows no page (docs/modes.md says why)"}));
    marker.reset();
    EXPECT_TRUE(std::filesystem::exists(paths.diagnostic));
}

TEST_F(Marker, ThatCannotBeMadeIsTold) {
    paths.development = folder.path / "no" / "folder" / "dev";
    make();
    EXPECT_FALSE(marker->isPresent());
    ASSERT_EQ(marker->messages().size(), 1U);
    EXPECT_EQ(marker->messages()[0], "cannot make " + paths.development.string() +
                                         " (No such file or directory): the panel loads the published page");
}

TEST_F(Marker, HasThePanelsOwnPaths) {
    EXPECT_EQ(DevelopmentMarker::Paths{}.development, "/tmp/zelvix-fcp-dev");
    EXPECT_EQ(DevelopmentMarker::Paths{}.diagnostic, "/tmp/zelvix-fcp-diag");
}

} // namespace
} // namespace workbench
