#include "Workbench/ContainerApp/Options.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace workbench {

namespace {

std::string problemOf(std::vector<std::string> const& arguments) {
    auto problem = std::string{};
    EXPECT_FALSE(readOptions(arguments, problem));
    return problem;
}

ContainerOptions read(std::vector<std::string> const& arguments) {
    auto problem = std::string{};
    auto const options = readOptions(arguments, problem);
    EXPECT_TRUE(options) << problem;
    return options.value_or(ContainerOptions{});
}

} // namespace

TEST(ContainerOptions, ShowsAWindowAndSaysLittleByDefault) {
    auto const options = read({});
    EXPECT_EQ(ContainerOptions::Action::Run, options.action);
    EXPECT_TRUE(options.window);
    EXPECT_FALSE(options.verbose);
    EXPECT_EQ("", options.database);
}

TEST(ContainerOptions, ReadsEveryOption) {
    auto const options = read({"--no-window", "--database", "/tmp/x", "--verbose"});
    EXPECT_FALSE(options.window);
    EXPECT_TRUE(options.verbose);
    EXPECT_EQ("/tmp/x", options.database);
    EXPECT_EQ(ContainerOptions::Action::Help, read({"--help"}).action);
    EXPECT_EQ(ContainerOptions::Action::Help, read({"-h"}).action);
    EXPECT_EQ(ContainerOptions::Action::Version, read({"--version"}).action);
}

TEST(ContainerOptions, MakesTheImportedFileAFullPath) {
    auto const options = read({"--import", "a.csv", "--sequence", "reel-1"});
    EXPECT_EQ(std::filesystem::current_path() / "a.csv", options.importFile);
    EXPECT_EQ("reel-1", options.sequence);
    EXPECT_EQ("/films/a.csv", read({"--import", "/films/x/../a.csv"}).importFile);
    EXPECT_EQ("", read({}).importFile);
}

TEST(ContainerOptions, NamesWhatItDoesNotUnderstand) {
    EXPECT_EQ("unknown argument --windows", problemOf({"--windows"}));
    EXPECT_EQ("unknown argument clip.mp4", problemOf({"--verbose", "clip.mp4"}));
    EXPECT_EQ("--database needs a file", problemOf({"--database"}));
    EXPECT_EQ("--database needs a file", problemOf({"--database", ""}));
    EXPECT_EQ("--import needs a file", problemOf({"--import"}));
    EXPECT_EQ("--sequence needs a sequence's key", problemOf({"--import", "a", "--sequence"}));
    EXPECT_EQ("--sequence belongs to --import", problemOf({"--sequence", "reel-1"}));
}

TEST(ContainerOptions, ExplainsEveryOptionAndExitCode) {
    for (auto const* word :
         {"--database", "--no-window", "--verbose", "--version", "--help", "0 ended", "1 internal", "2 wrong",
          "3 another", "4 no session bus", "5 the database", "6 the file", "--import", "--sequence"})
        EXPECT_NE(std::string::npos, helpText().find(word)) << word;
}

} // namespace workbench
