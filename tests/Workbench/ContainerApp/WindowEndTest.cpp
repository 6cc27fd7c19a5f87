#include "Workbench/ContainerApp/WindowProgramFixture.h"

#include <csignal>

namespace workbench {

namespace {

using FolderDialogTest = FolderDialogFixture;
using WindowProgramTest = WindowProgramFixture;

} // namespace

TEST_F(FolderDialogTest, IsAnsweredNullWhenTheProgramEnds) {
    auto const requestId = client.send("selectOutputFolder");
    ASSERT_TRUE(isOpen());
    container->signal(SIGTERM);
    EXPECT_EQ(0, container->wait());
    ASSERT_TRUE(isAnswered(requestId));
    EXPECT_EQ(std::vector{Json(nullptr)}, client.answers(requestId));
}

TEST_F(WindowProgramTest, EndsWhenItsWindowIsClosed) {
    press("ctrl+w");
    EXPECT_TRUE(happensAfter("ctrl+w", [&] { return container->wait(std::chrono::seconds{1}) == 0; }));
}

} // namespace workbench
