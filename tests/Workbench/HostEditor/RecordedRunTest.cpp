#include "Workbench/HostEditor/ProgramFixture.h"
#include "Workbench/HostEditor/WaitUntil.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <set>

namespace workbench {
namespace {

using nlohmann::json;

// The real panel, page and container, as somebody has them who reports a fault, and somebody who looks into
// it.
class RecordedRun : public Program {
protected:
    std::vector<std::string> run(std::vector<std::string> const& more) const {
        auto all = command({"--panel", REAL_PANEL});
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }

    // Each with a container that knows nothing yet.
    [[nodiscard]] std::vector<std::string> emptyStore() {
        auto const home = folder.path / ("home" + std::to_string(++homes));
        return {"XDG_DATA_HOME=" + home.string()};
    }

    [[nodiscard]] std::string written() const {
        std::ifstream in{file};
        return {std::istreambuf_iterator<char>{in}, {}};
    }

    [[nodiscard]] std::vector<json> lines() const {
        std::ifstream in{file};
        std::vector<json> all;
        for (std::string text; std::getline(in, text);)
            all.push_back(json::parse(text));
        return all;
    }

    // A run that somebody wrote down by hand: a comment, a seek of the page, the user's way back to it.
    [[nodiscard]] std::filesystem::path commentRun(std::string const& seekAnswer) const {
        json const comment = {{"command", "syncComment"}, {"resolveId", "a"}, {"id", "c1"},
                              {"seconds", 1.001},         {"text", "Größe"},  {"replies", json::array()}};
        json const seek = {{"command", "seekTo"}, {"resolveId", "b"}, {"seconds", 2.002}};
        json const marker = {
            {"author", ""},     {"colour", nullptr},        {"duration", 0.0},
            {"id", "c1"},       {"replies", json::array()}, {"resolved", false},
            {"seconds", 1.001}, {"start", 1.001},           {"text", "Gr\u00c3\u00b6\u00c3\u009fe"}};
        auto const answer = [](char const* to, std::string const& value) {
            return json{{"at", 0},
                        {"by", "panel"},
                        {"event", "fcp:resolve"},
                        {"detail", {{"resolveId", to}, {"value", value}}}};
        };
        auto const position = [](double seconds) {
            return json{{"at", 0},
                        {"by", "panel"},
                        {"event", "fcp:playhead-changed"},
                        {"detail", {{"seconds", seconds}}}};
        };
        std::string text;
        for (auto const& line : std::vector<json>{
                 {{"at", 0}, {"by", "host"}, {"files", {film()}}},
                 {{"at", 0}, {"by", "page"}, {"message", comment}},
                 answer("a", "true"),
                 {{"at", 0}, {"by", "page"}, {"message", seek}},
                 answer("b", seekAnswer),
                 position(2.002),
                 position(1.001),
                 {{"at", 0}, {"by", "panel"}, {"event", "fcp:marker-clicked"}, {"detail", marker}},
             })
            text += line.dump() + "\n";
        return folder.write("by-hand.jsonl", text);
    }

    TemporaryFolder folder;
    std::filesystem::path const file = folder.path / "run.jsonl";
    int homes = 0;
};

TEST_F(RecordedRun, IsWrittenDownAndGoesTheSameWayAgain) {
    RunningProgram first{run({"--record", file.string(), film()}), emptyStore()};
    ASSERT_TRUE(first.waitFor("page connected, container connected")) << first.output();
    runCommand("xdotool key space");
    ASSERT_TRUE(first.waitFor("played ")) << first.output();
    // The page's lines come a little later.
    ASSERT_TRUE(waitUntil([&] { return written().find("\"seconds\":2.96963") != std::string::npos; }))
        << written();
    endCleanly(first);

    std::set<std::string> speakers;
    for (auto const& line : lines())
        speakers.insert(line.at("by"));
    EXPECT_EQ(speakers, (std::set<std::string>{"host", "page", "panel", "workbench"}));
    EXPECT_NE(written().find("\"command\":\"getTimeline\""), std::string::npos);
    EXPECT_NE(written().find("\"files\":[\"" + film()), std::string::npos);
    EXPECT_NE(written().find("\"frame\":89"), std::string::npos);

    RunningProgram again{run({"--replay", file.string()}), emptyStore()};
    EXPECT_EQ(again.waitForEnd(120'000), 0) << again.output() << written();
    EXPECT_EQ(again.linesWith("answers and events are as recorded").size(), 1U) << again.output();
}

TEST_F(RecordedRun, GoesThroughEditorAndContainer) {
    RunningProgram program{run({"--replay", commentRun("true").string()}), emptyStore()};
    EXPECT_EQ(program.waitForEnd(120'000), 0) << program.output();
    EXPECT_EQ(program.linesWith("replay: all of 5 answers and events are as recorded").size(), 1U)
        << program.output();
}

TEST_F(RecordedRun, EndsAtTheFirstDifferenceAndNamesIt) {
    RunningProgram program{run({"--replay", commentRun("false").string()}), emptyStore()};
    EXPECT_EQ(program.waitForEnd(120'000), 1) << program.output();
    EXPECT_EQ(program.linesWith("zelvix-workbench: replay: "),
              std::vector<std::string>{"zelvix-workbench: replay: line 5 goes otherwise: answer to seekTo: "
                                       "recorded false, found true"});
}

TEST_F(RecordedRun, KeepsTheContainersChannel) {
    RunningProgram program{run({"--record", file.string(), film()}), emptyStore()};
    ASSERT_TRUE(program.waitFor("page connected, container connected")) << program.output();
    // A jump of the user's, so that the panel asks for a marker.
    runCommand("xdotool key Right End");
    ASSERT_TRUE(waitUntil([&] { return written().find("containerResponse") != std::string::npos; }))
        << written();
    endCleanly(program);
    auto const all = lines();
    auto const asked = std::ranges::find(all, json("containerCommand"),
                                         [](json const& line) { return line.value("notification", json()); });
    ASSERT_NE(asked, all.end());
    EXPECT_EQ(asked->at("by"), "bus");
    EXPECT_EQ(asked->at("arguments").at(0).at("command"), "getMarkerAtTime");
    EXPECT_EQ(asked->at("arguments").at(0).at("threshold"), 0.5);
}

// What is posted before it is there would be lost; but it may never come.
TEST_F(RecordedRun, WaitsTenSecondsForAContainer) {
    auto const nothing = folder.write("nothing.jsonl", "{\"by\":\"workbench\"}\n");
    auto environment = emptyStore();
    // The web engine wants the folder of the bus to exist.
    environment.push_back("DBUS_SESSION_BUS_ADDRESS=unix:path=" + (folder.path / "bus").string());
    RunningProgram program{run({"--replay", nothing.string()}), environment};
    EXPECT_EQ(program.waitForEnd(120'000), 0) << program.output();
    auto const loaded = program.linesWith("panel loaded from ");
    ASSERT_EQ(loaded.size(), 1U) << program.output();
    EXPECT_GE(std::atoi(loaded.front().c_str()), 10'000) << loaded.front();
}

TEST_F(RecordedRun, IsNotWrittenOverAnotherOne) {
    auto const kept = folder.write("run.jsonl", "a rare fault");
    RunningProgram program{run({"--record", kept.string()})};
    EXPECT_EQ(program.waitForEnd(), 1);
    EXPECT_NE(program.output().find("it holds something already; name another file"), std::string::npos);
    EXPECT_EQ(written(), "a rare fault");
}

TEST_F(RecordedRun, IsRefusedWhenItIsNone) {
    RunningProgram program{run({"--replay", film()})};
    EXPECT_EQ(program.waitForEnd(), 1);
    EXPECT_NE(program.output().find("film.mp4 is no recording: its line 1 is no JSON object"),
              std::string::npos)
        << program.output();
}

TEST_F(RecordedRun, DoesNotGoToAStrangersPage) {
    Stranger const stranger;
    ASSERT_TRUE(stranger.isListening);
    RunningProgram program{run({"--replay", commentRun("true").string()}), emptyStore()};
    EXPECT_EQ(program.waitForEnd(), 1) << program.output();
    EXPECT_NE(program.output().find("Port 3000 is taken"), std::string::npos) << program.output();
}

} // namespace
} // namespace workbench
