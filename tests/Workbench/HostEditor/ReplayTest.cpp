#include "Workbench/HostEditor/Replay.h"

#include "Workbench/HostEditor/Clips.h"
#include "Workbench/HostEditor/Editor.h"
#include "Workbench/HostEditor/Journal.h"
#include "Workbench/HostEditor/StartEngine.h"
#include "Workbench/HostEditor/TemporaryFolder.h"
#include "Workbench/HostEditor/WaitUntil.h"

#include <gtest/gtest.h>

#include <optional>

namespace workbench {
namespace {

class RecordingFile : public testing::Test {
protected:
    std::string problemWith(std::string const& content) {
        auto const read = readRecording(folder.write("run.jsonl", content));
        return std::holds_alternative<std::string>(read) ? std::get<std::string>(read) : "none";
    }

    TemporaryFolder folder;
    std::string const name = (folder.path / "run.jsonl").string();
};

TEST_F(RecordingFile, NamesTheFilesThatWereOpenLast) {
    std::string const text = "{\"by\":\"workbench\"}\n{\"by\":\"host\",\"files\":[\"/a.mp4\"]}\n"
                             "{\"by\":\"host\",\"files\":[\"/a.mp4\",\"/b.mp4\",7]}\n{\"by\":\"page\"}\n";
    auto const read = readRecording(folder.write("run.jsonl", text));
    ASSERT_TRUE(std::holds_alternative<ReadRecording>(read));
    EXPECT_EQ(std::get<ReadRecording>(read).text, text);
    EXPECT_EQ(std::get<ReadRecording>(read).files, (std::vector<std::string>{"/a.mp4", "/b.mp4"}));
}

TEST_F(RecordingFile, IsRefusedByTheNumberOfTheLineThatIsNone) {
    EXPECT_EQ(problemWith("{\"by\":\"page\"}\nnonsense"),
              name + " is no recording: its line 2 is no JSON object with \"by\"");
    EXPECT_EQ(problemWith("[]"), name + " is no recording: its line 1 is no JSON object with \"by\"");
    EXPECT_EQ(problemWith(noise(5000)), name + " is no recording: its line 1 is no JSON object with \"by\"");
}

TEST_F(RecordingFile, IsRefusedWhenThereIsNothingInIt) {
    auto const problem =
        "cannot read the recording " + name + ": it is missing, empty or closed to this user";
    EXPECT_EQ(problemWith(""), problem);
    std::filesystem::remove(name);
    EXPECT_EQ(std::get<std::string>(readRecording(name)), problem);
}

class ReplayTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        startEngine();
        media = std::make_unique<TemporaryFolder>();
        makeClip(media->path / "film.mp4", {30000, 1001}, 90);
        makeClip(media->path / "second.mp4", {25, 1}, 50);
    }

    static void TearDownTestSuite() { media.reset(); }

    ReplayTest() { editor.open({media->path / "film.mp4", media->path / "second.mp4"}); }

    ~ReplayTest() override { editor.deactivate(); }

    std::string outcomeOf(std::string const& report) {
        replay.report(report);
        return (outcome->isAsRecorded ? "well: " : "otherwise: ") + outcome->line;
    }

    static inline std::unique_ptr<TemporaryFolder> media;
    Journal journal;
    Editor editor{journal};
    std::optional<ReplayOutcome> outcome;
    Replay replay{editor, "{}", [this](auto const& told) { outcome = told; }};
};

TEST_F(ReplayTest, MovesThePlayheadToTheFrameThatWasTold) {
    for (std::int64_t const frame : {7, 89, 1}) {
        auto const time = timeOfFrame(frame, {30000, 1001});
        replay.movePlayhead(static_cast<double>(time.value) / time.timescale);
        EXPECT_EQ(editor.target(), frame);
        EXPECT_TRUE(waitUntil([&] { return editor.position() == frame; }));
    }
}

TEST_F(ReplayTest, MakesTheSequenceActiveThatIsMeant) {
    replay.activate(R"({"name":"second.mp4","duration":2.0,"frameRate":25})");
    EXPECT_EQ(editor.activeSequence()->name, "second.mp4");
    replay.activate(R"({"name":"film.mp4","duration":3.003})");
    EXPECT_EQ(editor.activeSequence()->name, "film.mp4");
}

TEST_F(ReplayTest, LeavesTheSequenceWhereNoneIsMeant) {
    for (auto const* const sequence :
         {R"({"name":"second.mp4","duration":2.1})", R"({"name":"other.mp4","duration":2})",
          R"({"name":7,"duration":"2"})", "[]", "nonsense", ""})
        replay.activate(sequence);
    EXPECT_EQ(editor.activeSequence()->name, "film.mp4");
}

TEST_F(ReplayTest, MovesNothingWhereNothingIsOpen) {
    editor.deactivate();
    replay.movePlayhead(1);
    EXPECT_EQ(editor.position(), 0);
}

TEST_F(ReplayTest, EndsWithOneLineForPeople) {
    EXPECT_EQ(outcomeOf(R"({"compared":12})"), "well: all of 12 answers and events are as recorded");
    EXPECT_EQ(
        outcomeOf(R"({"compared":2,"difference":{"line":9,"about":"answer to getTimeline",)"
                  R"("recorded":{"name":"Größe"},"found":null}})"),
        R"(otherwise: line 9 goes otherwise: answer to getTimeline: recorded {"name":"Gr\u00f6\u00dfe"}, found null)");
    EXPECT_EQ(outcomeOf(R"({"compared":2,"difference":{"line":9,"about":"event x","recorded":1}})"),
              "otherwise: line 9 goes otherwise: event x: recorded 1, found nothing in time");
    EXPECT_EQ(outcomeOf(R"({"problem":"no"})"), R"(otherwise: the page cannot play it back: "no")");
    for (auto const* const report : {"", "7", "nonsense"})
        EXPECT_EQ(outcomeOf(report), "otherwise: the page's report cannot be read");
}

TEST_F(ReplayTest, ShortensWhatIsTooLongForALine) {
    auto const line =
        outcomeOf(R"({"difference":{"line":1,"about":"a","recorded":")" + std::string(5000, 'x') + "\"}}");
    EXPECT_LT(line.size(), 600U);
    EXPECT_NE(line.find("xxx..."), std::string::npos);
}

TEST_F(ReplayTest, EndsWhenNoPageAsksForTheRecording) {
    std::optional<ReplayOutcome> end;
    Replay const unheard{editor, "{}", [&](auto const& told) { end = told; }, 20};
    EXPECT_TRUE(waitUntil([&] { return end.has_value(); }));
    EXPECT_FALSE(end->isAsRecorded);
    EXPECT_EQ(end->line, "no page has asked for the recording: the panel has not loaded it");
}

TEST_F(ReplayTest, WaitsForAPageThatHasAsked) {
    std::optional<ReplayOutcome> end;
    Replay patient{editor, "lines", [&](auto const& told) { end = told; }, 20};
    EXPECT_EQ(patient.recording(), "lines");
    EXPECT_FALSE(waitUntil([&] { return end.has_value(); }, 100));
}

} // namespace
} // namespace workbench
