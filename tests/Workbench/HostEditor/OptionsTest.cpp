#include "Workbench/HostEditor/Options.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

TEST(Options, AskForEverythingWhenNothingIsSaid) {
    auto const line = parseCommandLine({});
    EXPECT_EQ(line.request, Request::Run);
    EXPECT_TRUE(line.options.files.empty());
    EXPECT_TRUE(line.options.panelModule.empty());
    EXPECT_FALSE(line.options.production);
    EXPECT_TRUE(line.options.servesPage);
    EXPECT_TRUE(line.options.startsContainer);
    EXPECT_FALSE(line.options.observerThread);
}

TEST(Options, KeepFilesInTheirOrderBetweenSwitches) {
    auto const line = parseCommandLine({"b.mp4", "--no-page", "a.mp4", "--no-container"});
    EXPECT_EQ(line.options.files, (std::vector<std::string>{"b.mp4", "a.mp4"}));
    EXPECT_FALSE(line.options.servesPage);
    EXPECT_FALSE(line.options.startsContainer);
}

TEST(Options, KnowProductionAndTheObserverThread) {
    auto const line = parseCommandLine({"--production", "--observer-thread"});
    EXPECT_TRUE(line.options.production);
    EXPECT_TRUE(line.options.observerThread);
}

TEST(Options, TakeThePanelInBothSpellings) {
    EXPECT_EQ(parseCommandLine({"--panel", "/x/panel.so"}).options.panelModule, "/x/panel.so");
    EXPECT_EQ(parseCommandLine({"--panel=/x/panel.so"}).options.panelModule, "/x/panel.so");
}

TEST(Options, RefuseAPanelWithoutAFile) {
    EXPECT_EQ(parseCommandLine({"--panel"}).problem, "--panel needs a file");
    EXPECT_EQ(parseCommandLine({"--panel="}).request, Request::Refuse);
}

TEST(Options, TakeTheFileOfARecordingInBothSpellings) {
    EXPECT_EQ(parseCommandLine({"--record", "a.jsonl", "film.mp4"}).options.recordTo, "a.jsonl");
    EXPECT_EQ(parseCommandLine({"--record=a.jsonl"}).options.recordTo, "a.jsonl");
    auto const line = parseCommandLine({"--replay", "b.jsonl", "film.mp4"});
    EXPECT_EQ(line.options.replayFrom, "b.jsonl");
    EXPECT_EQ(line.options.files, std::vector<std::string>{"film.mp4"});
    EXPECT_EQ(parseCommandLine({"--replay=b.jsonl"}).options.replayFrom, "b.jsonl");
}

TEST(Options, RefuseARecordingWithoutAFile) {
    for (auto const* const option : {"--record", "--replay"}) {
        EXPECT_EQ(parseCommandLine({option}).problem, std::string{option} + " needs a file");
        EXPECT_EQ(parseCommandLine({std::string{option} + "="}).request, Request::Refuse);
    }
    EXPECT_EQ(parseCommandLine({"--recorder=a"}).problem, "unknown option --recorder=a");
}

TEST(Options, DoNotRecordAndPlayBackAtOnce) {
    EXPECT_EQ(parseCommandLine({"--record=a", "--replay=b"}).problem,
              "--record and --replay exclude each other");
}

// Only the page that is served here takes part.
TEST(Options, RecordWithTheServedPageOnly) {
    for (auto const* const session : {"--record=a", "--replay=b"})
        for (auto const* const other : {"--no-page", "--production"})
            EXPECT_EQ(parseCommandLine({other, session}).problem,
                      "--record and --replay need the page that is served here, so neither --no-page nor "
                      "--production");
    EXPECT_EQ(parseCommandLine({"--record=a", "--help"}).request, Request::ShowHelp);
}

TEST(Options, NameWhatTheyDoNotKnow) {
    auto const line = parseCommandLine({"clip.mp4", "--speed"});
    EXPECT_EQ(line.request, Request::Refuse);
    EXPECT_EQ(line.problem, "unknown option --speed");
}

TEST(Options, TakeEverythingAfterTwoDashesForAFile) {
    auto const line = parseCommandLine({"--", "--help", "-x.mp4"});
    EXPECT_EQ(line.request, Request::Run);
    EXPECT_EQ(line.options.files, (std::vector<std::string>{"--help", "-x.mp4"}));
}

TEST(Options, AnswerTheFirstQuestionOnly) {
    EXPECT_EQ(parseCommandLine({"--help", "--speed"}).request, Request::ShowHelp);
    EXPECT_EQ(parseCommandLine({"-h"}).request, Request::ShowHelp);
    EXPECT_EQ(parseCommandLine({"--version"}).request, Request::ShowVersion);
}

TEST(Options, AreAllExplainedInTheHelp) {
    auto const help = helpText();
    for (auto const* const option : {"--panel", "--no-page", "--no-container", "--production",
                                     "--observer-thread", "--record", "--replay", "--help", "--version"})
        EXPECT_NE(help.find(option), std::string::npos) << option;
}

} // namespace
} // namespace workbench
