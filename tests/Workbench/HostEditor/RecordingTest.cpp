#include "Workbench/HostEditor/Recording.h"

#include "Workbench/HostEditor/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <iterator>

namespace workbench {
namespace {

using nlohmann::json;

class RecordingTest : public testing::Test {
protected:
    std::unique_ptr<Recording> begin(std::filesystem::path const& path) {
        auto begun = Recording::begin(path, [this](auto const& line) { complaints.push_back(line); });
        if (auto const* const problem = std::get_if<std::string>(&begun)) {
            problems.push_back(*problem);
            return nullptr;
        }
        return std::get<std::unique_ptr<Recording>>(std::move(begun));
    }

    // The lines without their times, which are looked at by themselves.
    std::vector<json> lines() {
        std::ifstream in{file};
        std::vector<json> found;
        double before = 0;
        for (std::string text; std::getline(in, text);) {
            auto line = json::parse(text);
            auto const at = line.at("at").get<double>();
            EXPECT_GE(at, before) << text;
            EXPECT_LT(at, 60'000) << text;
            before = at;
            line.erase("at");
            found.push_back(line);
        }
        return found;
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder.path / "run.jsonl";
    std::vector<std::string> complaints;
    std::vector<std::string> problems;
};

TEST_F(RecordingTest, HoldsEachThingInALineOfItsOwn) {
    auto const recording = begin(file);
    ASSERT_TRUE(recording);
    recording->filesOpened({"/films/Größe.mp4"});
    recording->sequenceChanged(SequenceFacts{.key = "file:///a.mp4",
                                             .uri = {},
                                             .name = "a.mp4",
                                             .rate = {30000, 1001},
                                             .length = 300,
                                             .marks = {}});
    recording->playheadMoved(42);
    recording->sequenceChanged(std::nullopt);
    recording->channelSaid("containerCommand", Glib::VariantContainerBase::create_tuple(
                                                   Glib::Variant<Glib::ustring>::create("x")));
    EXPECT_EQ(lines(),
              (std::vector<json>{
                  {{"by", "workbench"}, {"version", ZELVIX_VERSION}},
                  {{"by", "host"}, {"files", {"/films/Größe.mp4"}}},
                  {{"by", "host"},
                   {"sequence",
                    {{"key", "file:///a.mp4"}, {"name", "a.mp4"}, {"rate", {30000, 1001}}, {"length", 300}}}},
                  {{"by", "host"}, {"frame", 42}},
                  {{"by", "host"}, {"sequence", nullptr}},
                  {{"by", "bus"}, {"notification", "containerCommand"}, {"arguments", {"x"}}},
              }));
    EXPECT_TRUE(complaints.empty());
}

TEST_F(RecordingTest, TakesThePagesLinesAsTheyAre) {
    auto const recording = begin(file);
    recording->keep("{\"at\":1,\"by\":\"page\"}\n{\"at\":2,\"by\":\"panel\"}");
    recording->keep("");
    recording->keep("{\"at\":3,\"by\":\"page\"}\n");
    auto const all = lines();
    ASSERT_EQ(all.size(), 4U);
    EXPECT_EQ(all[2], (json{{"by", "panel"}}));
    EXPECT_EQ(all[3], (json{{"by", "page"}}));
}

TEST_F(RecordingTest, TellsThePageWhenItBegan) {
    using namespace std::chrono;
    auto const now = [] {
        return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
    };
    auto const before = now();
    auto const recording = begin(file);
    EXPECT_GE(recording->began(), before);
    EXPECT_LE(recording->began(), now());
}

TEST_F(RecordingTest, WritesNamesThatAreNoUnicode) {
    auto const recording = begin(file);
    recording->filesOpened({"/films/\xff.mp4"});
    EXPECT_EQ(lines().at(1).at("files").at(0), "/films/\xef\xbf\xbd.mp4");
}

TEST_F(RecordingTest, LeavesAFileAloneThatHoldsSomething) {
    folder.write("run.jsonl", "a rare fault");
    EXPECT_FALSE(begin(file));
    EXPECT_EQ(problems, std::vector<std::string>{"cannot record into " + file.string() +
                                                 ": it holds something already; name another file"});
    std::ifstream in{file};
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>{in}, {}), "a rare fault");
}

TEST_F(RecordingTest, UsesAFileThatIsEmpty) {
    folder.write("run.jsonl", "");
    EXPECT_TRUE(begin(file));
    EXPECT_EQ(lines().size(), 1U);
}

TEST_F(RecordingTest, SaysWhyAFileCannotBeMade) {
    auto const nowhere = folder.path / "missing" / "run.jsonl";
    EXPECT_FALSE(begin(nowhere));
    EXPECT_EQ(problems, std::vector<std::string>{"cannot record into " + nowhere.string() +
                                                 ": No such file or directory"});
}

TEST_F(RecordingTest, SaysOnceThatTheDiskIsFull) {
    auto const recording = begin("/dev/full");
    ASSERT_TRUE(recording);
    recording->playheadMoved(1);
    recording->playheadMoved(2);
    EXPECT_EQ(complaints,
              std::vector<std::string>{"the recording in /dev/full ends here: No space left on device"});
}

} // namespace
} // namespace workbench
