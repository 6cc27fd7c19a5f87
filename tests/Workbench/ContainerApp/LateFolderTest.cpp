#include "Workbench/ContainerApp/FolderDialogFixture.h"

namespace workbench {

namespace {

// After this the panel has told the page that no folder was chosen.
constexpr auto panelPatience = std::chrono::seconds{60};

using LateFolderTest = FolderDialogFixture;

} // namespace

TEST_F(LateFolderTest, KeepsAFolderThatIsChosenWhenNobodyWaitsAnyMore) {
    auto const begun = std::chrono::steady_clock::now();
    auto const isLate = [&] { return std::chrono::steady_clock::now() - begun > panelPatience; };
    auto const requestId = client.send("selectOutputFolder");
    ASSERT_TRUE(isOpen());
    while (!client.waitFor(isLate))
        EXPECT_EQ(nullptr, client.request("getMarkerAtTime", {{"seconds", 1}, {"threshold", 1}}));
    EXPECT_TRUE(client.answers(requestId).empty());
    ASSERT_TRUE(isAnsweredBy(choose, requestId));
    EXPECT_EQ(documents + "\n", outputOf("sqlite3 '" + folder / "store.sqlite" +
                                         "' \"SELECT value FROM settings WHERE key = 'outputFolder'\""));
    auto const file = documents + "/comments.csv";
    EXPECT_EQ(true, client.request("startExport", {{"format", "csv"}}));
    EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(file); }));
    std::filesystem::remove(file);
}

} // namespace workbench
