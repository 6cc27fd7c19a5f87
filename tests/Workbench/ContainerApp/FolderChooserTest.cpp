#include "Workbench/ContainerApp/FolderChooser.h"
#include "Workbench/ContainerApp/Store.h"
#include "Workbench/ContainerApp/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace workbench {

namespace {

class FolderChooserTest : public testing::Test {
protected:
    FolderChooserTest() {
        chooser.setDialog([this](std::string const& begin, FolderChooser::Chosen chosen) {
            opened.push_back(begin);
            respond = std::move(chosen);
        });
    }

    void choose() {
        chooser.choose(
            [this](std::optional<std::string> const& chosen) { answers += chosen.value_or("none") + " "; });
    }

    TemporaryFolder folder;
    Store store{folder / "store"};
    std::vector<std::string> problems;
    FolderChooser chooser{store.settings,
                          [this](std::string const& sentence) { problems.push_back(sentence); }};
    std::vector<std::string> opened;
    FolderChooser::Chosen respond;
    std::string answers;
};

} // namespace

TEST_F(FolderChooserTest, AnswersTheChosenFolderAndRemembersIt) {
    choose();
    EXPECT_EQ("", answers);
    respond("/films");
    EXPECT_EQ("/films ", answers);
    EXPECT_EQ("/films", store.settings.value(outputFolderSetting));
}

TEST_F(FolderChooserTest, AnswersNoneWhenThePersonChoosesNone) {
    store.settings.set(outputFolderSetting, "/old");
    choose();
    respond(std::nullopt);
    EXPECT_EQ("none ", answers);
    EXPECT_EQ("/old", store.settings.value(outputFolderSetting));
}

TEST_F(FolderChooserTest, BeginsInTheFolderThatWasChosenLast) {
    choose();
    respond("/films");
    choose();
    ASSERT_EQ(2U, opened.size());
    EXPECT_TRUE(std::filesystem::is_directory(opened[0])) << opened[0];
    EXPECT_EQ("/films", opened[1]);
}

TEST_F(FolderChooserTest, MakesTheFolderOnlyWhenItIsNeeded) {
    auto const documents = namedOutputFolder(store.settings);
    ASSERT_NE(std::string::npos, documents.find("/zelvix-session.")); // never a person's own
    std::filesystem::remove_all(documents);
    EXPECT_EQ(documents, namedOutputFolder(store.settings));
    EXPECT_FALSE(std::filesystem::exists(documents));
    EXPECT_EQ(documents, outputFolder(store.settings));
    EXPECT_TRUE(std::filesystem::is_directory(documents));
}

TEST_F(FolderChooserTest, LetsASecondRequestJoinTheOpenDialog) {
    choose();
    choose();
    EXPECT_EQ(1U, opened.size());
    respond("/films");
    EXPECT_EQ("/films /films ", answers);
    choose();
    EXPECT_EQ(2U, opened.size());
}

TEST_F(FolderChooserTest, AnswersNoneWhereNobodyCanBeAsked) {
    chooser.setDialog({});
    choose();
    EXPECT_EQ("none ", answers);
}

TEST_F(FolderChooserTest, AnswersAlsoWhenTheChoiceCannotBeKept) {
    choose();
    store.database.execute("PRAGMA query_only = ON");
    respond("/films");
    EXPECT_EQ("/films ", answers);
    ASSERT_EQ(1U, problems.size());
    EXPECT_EQ(0U, problems[0].find("the folder cannot be remembered: "));
}

} // namespace workbench
