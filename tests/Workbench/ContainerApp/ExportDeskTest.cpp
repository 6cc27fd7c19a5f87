#include "Workbench/ContainerApp/ExportDesk.h"
#include "Workbench/ContainerApp/CommentReader.h"
#include "Workbench/ContainerApp/CsvWriter.h"
#include "Workbench/ContainerApp/ExportFormat.h"
#include "Workbench/ContainerApp/ExporterFixture.h"
#include "Workbench/ContainerApp/Store.h"

namespace workbench {

namespace {

class ExportDeskTest : public ExporterFixture {
protected:
    ExportDeskTest() {
        store.comments.setObserver([](auto const&...) {});
        desk.setObserver([this](ExportState, std::string const& message) { messages.push_back(message); });
    }

    void add(Json const& value) { ASSERT_TRUE(store.comments.sync(readComment(value).value())); }

    // The settings, with the format and the folder of these tests.
    Json settings(Json const& more = Json::object()) {
        auto result = Json{{"format", "csv"}, {"folder", folder.path()}};
        result.update(more);
        return result;
    }

    std::string refusal(Json const& wanted) { return desk.start(wanted).value_or("started"); }

    // The contents of the one file that an export makes.
    std::string exported(Json const& wanted) {
        EXPECT_EQ("started", refusal(wanted));
        EXPECT_TRUE(queue.runOne());
        auto const record = store.exports.newest(1).at(0);
        EXPECT_EQ(ExportState::Done, record.state) << record.detail;
        return contentsOf(record.path);
    }

    std::string exportedName(Json const& wanted) {
        std::ignore = exported(wanted);
        return std::filesystem::path{store.exports.newest(1).at(0).path}.filename();
    }

    std::string idsIn(std::string const& csv) {
        auto ids = std::string{};
        auto stream = std::istringstream{csv};
        auto line = std::string{};
        std::getline(stream, line);
        while (std::getline(stream, line))
            ids += line.substr(0, line.find(',')) + " ";
        return ids;
    }

    TemporaryFolder other;
    Store store{other / "store"};
    ExportDesk desk{store.comments, store.sequences, store.settings, store.exports, exporter};
    std::vector<std::string> messages;
};

} // namespace

TEST_F(ExportDeskTest, ExportsTheActiveSequenceWithExactFrames) {
    auto sequence = HostSequence{};
    sequence.key = "one";
    sequence.name = "Reel 1";
    sequence.rate = FrameRate{30000, 1001};
    sequence.firstFrame = 107'892;
    sequence.dropFrame = true;
    store.sequences.setActive(sequence);
    add({{"id", "a"}, {"seconds", 60.06}, {"text", "Logo"}, {"author", "Ana"}});
    EXPECT_EQ(CsvWriter::header() + "a,01:01:00;02,1800,60.06,0,Ana,Logo,false,,\r\n", exported(settings()));
    EXPECT_EQ("Reel 1.csv", folder.names());
    store.sequences.setActive({});
    EXPECT_EQ(CsvWriter::header() + "a,01:01:00;02,1800,60.06,0,Ana,Logo,false,,\r\n",
              exported(settings({{"sequenceId", "one"}})));
}

TEST_F(ExportDeskTest, TellsHowFarAnExportIs) {
    add({{"id", "a"}, {"seconds", 1}});
    EXPECT_EQ(std::nullopt, desk.progress());
    ASSERT_EQ("started", refusal(settings()));
    ASSERT_TRUE(desk.progress());
    EXPECT_LE(0, *desk.progress());
    EXPECT_GE(1, *desk.progress());
    // The writer is done long before its end is taken notice of.
    ASSERT_TRUE(queue.waitForOne());
    EXPECT_EQ(1, desk.progress());
    EXPECT_TRUE(queue.runOne());
    EXPECT_EQ(std::nullopt, desk.progress());
}

TEST_F(ExportDeskTest, TakesThePagesRateOnlyWhenNobodyKnowsABetterOne) {
    add({{"id", "a"}, {"seconds", 3600}});
    EXPECT_EQ(CsvWriter::header() + "a,00:59:56:09,86313,3600,0,,,false,,\r\n",
              exported(settings({{"frameRate", 23.98}})));
    auto sequence = HostSequence{};
    sequence.key = defaultSequence;
    sequence.rate = FrameRate{25, 1};
    store.sequences.setActive(sequence);
    EXPECT_EQ(CsvWriter::header() + "a,01:00:00:00,90000,3600,0,,,false,,\r\n",
              exported(settings({{"frameRate", 23.98}})));
}

TEST_F(ExportDeskTest, BeginsAtTheTimecodeThatThePageWants) {
    add({{"id", "a"}, {"seconds", 1}});
    EXPECT_EQ(CsvWriter::header() + "a,10:00:01:00,25,1,0,,,false,,\r\n",
              exported(settings({{"frameRate", 25}, {"timecodeStart", "10:00:00:00"}})));
    EXPECT_EQ(CsvWriter::header() + "a,10:00:01;00,30,1.001,0,,,false,,\r\n",
              (add({{"id", "a"}, {"seconds", 1.001}}),
               exported(settings({{"frameRate", 29.97}, {"timecodeStart", "10:00:00;00"}}))));
}

TEST_F(ExportDeskTest, LeavesOutWhatThePageDoesNotWant) {
    add({{"id", "a"}, {"seconds", 1}, {"replies", {{{"id", "r"}, {"replies", {{{"id", "s"}}}}}}}});
    add({{"id", "b"}, {"seconds", 0}, {"resolved", true}, {"replies", {{{"id", "t"}}}}});
    EXPECT_EQ("b t a r s ", idsIn(exported(settings())));
    EXPECT_EQ("b t a r s ", idsIn(exported(settings({{"include", "all"}, {"replies", true}}))));
    EXPECT_EQ("a r s ", idsIn(exported(settings({{"include", "open"}}))));
    EXPECT_EQ("b a ", idsIn(exported(settings({{"replies", false}}))));
    EXPECT_EQ("a ", idsIn(exported(settings({{"include", "open"}, {"replies", false}}))));
}

TEST_F(ExportDeskTest, ReducesTheFileNameToOnePlainComponent) {
    EXPECT_EQ("passwd.csv", exportedName(settings({{"fileName", "../../etc/passwd"}})));
    EXPECT_EQ("notes.csv", exportedName(settings({{"fileName", "C:\\temp\\notes.csv"}})));
    EXPECT_EQ("hidden.csv", exportedName(settings({{"fileName", "..hidden"}})));
    EXPECT_EQ("ab.csv", exportedName(settings({{"fileName", "a\n\tb"}})));
    EXPECT_EQ("comments.csv", exportedName(settings({{"fileName", "../.."}})));
    EXPECT_EQ("comments (2).csv", exportedName(settings({{"fileName", ""}})));
    EXPECT_EQ("Café 日本.csv", exportedName(settings({{"fileName", "Café 日本"}})));
    EXPECT_EQ("x.CSV.csv", exportedName(settings({{"fileName", "x.CSV.csv"}})));
}

TEST_F(ExportDeskTest, CutsLongFileNamesBetweenCharacters) {
    auto endless = std::string{};
    for (auto count = 0; count < 200; ++count)
        endless += "日";
    auto const name = exportedName(settings({{"fileName", endless}}));
    EXPECT_EQ(198U + 4U, name.size());
}

TEST_F(ExportDeskTest, RefusesSettingsThatMakeNoSense) {
    for (auto const& wanted :
         {Json{{"format", "avi"}}, Json{{"format", ""}}, Json{{"format", "CSV"}}, Json{{"format", 7}},
          Json{{"include", "some"}}, Json{{"replies", "yes"}}, Json{{"onExists", "ask"}}, Json{{"folder", 7}},
          Json{{"folder", "here"}}, Json{{"folder", ""}}, Json{{"folder", folder / "missing"}},
          Json{{"fileName", 7}}, Json{{"timecodeStart", 7}}, Json{{"frameRate", "25"}},
          Json{{"frameRate", 25}, {"timecodeStart", "noon"}}})
        EXPECT_NE("started", refusal(settings(wanted))) << wanted;
    EXPECT_NE("started", refusal(Json::object()));
    EXPECT_EQ("", folder.names());
    EXPECT_TRUE(store.exports.newest(1).empty());
}

TEST_F(ExportDeskTest, SaysWhyItRefusesAFolder) {
    EXPECT_EQ("there is no folder " + folder / "missing" + ": make it, or choose another one",
              refusal(settings({{"folder", folder / "missing"}})));
    EXPECT_EQ(R"(the setting "folder" is "here", but it takes a full path, which begins with "/")",
              refusal(settings({{"folder", "here"}})));
    writeFile(folder / "file", "");
    EXPECT_EQ("there is no folder " + folder / "file" + ": make it, or choose another one",
              refusal(settings({{"folder", folder / "file"}})));
}

TEST_F(ExportDeskTest, NamesTheSettingThatItRefusesAndWhatItTakes) {
    EXPECT_EQ(R"(the setting "format" is "avi", but it takes )" + exportFormatNames(),
              refusal(settings({{"format", "avi"}})));
    EXPECT_EQ(R"(the setting "format" is "", but it takes )" + exportFormatNames(), refusal(Json::object()));
    EXPECT_EQ(R"(the setting "include" is "some", but it takes "all" or "open")",
              refusal(settings({{"include", "some"}})));
    EXPECT_EQ(R"(the setting "onExists" is "ask", but it takes "rename" or "replace")",
              refusal(settings({{"onExists", "ask"}})));
    EXPECT_EQ(R"(the setting "replies" is "yes", but it takes true or false)",
              refusal(settings({{"replies", "yes"}})));
    EXPECT_EQ(R"(the setting "fileName" is ["a"], but it takes a text)",
              refusal(settings({{"fileName", {"a"}}})));
    EXPECT_EQ(R"(the setting "frameRate" is "25", but it takes a number)",
              refusal(settings({{"frameRate", "25"}})));
    EXPECT_EQ(R"(the setting "timecodeStart" is "noon", but it takes a timecode of the sequence's rate, )"
              R"(as "01:00:00:00")",
              refusal(settings({{"frameRate", 25}, {"timecodeStart", "noon"}})));
}

TEST_F(ExportDeskTest, SaysHowToComeToARate) {
    EXPECT_EQ(R"(nobody knows the frame rate that the format "fcpxml" counts in: open the sequence in the )"
              R"(editor, or give the setting "frameRate")",
              refusal(settings({{"format", "fcpxml"}})));
    EXPECT_EQ("", folder.names());
    EXPECT_EQ("comments.fcpxml", exportedName(settings({{"format", "fcpxml"}, {"frameRate", 23.98}})));
}

TEST_F(ExportDeskTest, ExportsInEveryFormat) {
    add({{"id", "a"}, {"seconds", 1}, {"text", "Logo"}});
    for (auto const* format : {"csv", "edl", "fcpxml", "ffmetadata", "kdenlive", "shotcut", "webvtt"}) {
        auto const text = exported(settings({{"format", format}, {"frameRate", 25}}));
        EXPECT_NE(std::string::npos, text.find("Logo")) << text;
        EXPECT_NE(std::string::npos, exportFormatNames().find('"' + std::string{format} + '"'));
    }
    EXPECT_EQ(
        "comments.csv comments.edl comments.fcpxml comments.ffmeta comments.json comments.mlt comments.vtt",
        folder.names());
}

TEST_F(ExportDeskTest, LeavesNothingOfAContentThatTheFormatCannotHold) {
    auto list = Json::array();
    for (auto number = 0; number < 1000; ++number)
        list.push_back({{"id", std::to_string(number)}, {"seconds", number}});
    ASSERT_TRUE(store.comments.syncAll(readComments(list).value()));
    EXPECT_EQ(
        "an edit decision list holds at most 999 comments, and there are 1000: export only the open ones, or "
        "in another format",
        refusal(settings({{"format", "edl"}, {"frameRate", 25}})));
    EXPECT_EQ("", folder.names());
    EXPECT_TRUE(store.exports.newest(1).empty());
}

TEST_F(ExportDeskTest, ExportsInTheEditorsExactRate) {
    auto sequence = HostSequence{};
    sequence.key = "one";
    sequence.name = "Reel 1";
    sequence.rate = FrameRate{24000, 1001};
    sequence.durationFrames = 480;
    store.sequences.setActive(sequence);
    add({{"id", "a"}, {"seconds", 10.01}});
    auto const text = exported(settings({{"format", "fcpxml"}, {"frameRate", 25}}));
    EXPECT_NE(std::string::npos, text.find("<marker start=\"240240/24000s\" ")) << text;
    EXPECT_NE(std::string::npos, text.find(" duration=\"480480/24000s\" ")) << text;
    EXPECT_NE(std::string::npos, text.find("<project name=\"Reel 1\">")) << text;
}

TEST_F(ExportDeskTest, QuotesALongSettingInPart) {
    auto const message = refusal(settings({{"include", std::string(1'000'000, 'x')}}));
    EXPECT_LT(message.size(), 200U) << message;
}

TEST_F(ExportDeskTest, TakesTheFolderThatWasChosenLast) {
    store.settings.set(outputFolderSetting, folder.path());
    EXPECT_EQ("started", refusal({{"format", "csv"}}));
    ASSERT_TRUE(queue.runOne());
    EXPECT_EQ("comments.csv", folder.names());
}

TEST_F(ExportDeskTest, RefusesToWriteElsewhereWhenTheChosenFolderHasGone) {
    store.settings.set(outputFolderSetting, folder / "gone");
    EXPECT_EQ("there is no folder " + folder / "gone" + ": make it, or choose another one",
              refusal({{"format", "csv"}}));
}

TEST_F(ExportDeskTest, RunsOneExportAtATime) {
    EXPECT_EQ("started", refusal(settings()));
    EXPECT_EQ("an export is running already: wait for its end, or cancel it", refusal(settings()));
    ASSERT_TRUE(queue.runOne());
    EXPECT_EQ("started", refusal(settings()));
    ASSERT_TRUE(queue.runOne());
}

TEST_F(ExportDeskTest, AnswersACancellationWhenNothingIsLeft) {
    auto list = Json::array();
    for (auto number = 0; number < 20'000; ++number)
        list.push_back({{"id", std::to_string(number)}, {"seconds", number}});
    ASSERT_TRUE(store.comments.syncAll(readComments(list).value()));
    ASSERT_EQ("started", refusal(settings()));
    auto answers = std::string{};
    desk.cancel([&](bool cancelled) { answers += cancelled ? "yes " : "no "; });
    desk.cancel([&](bool cancelled) { answers += cancelled ? "yes " : "no "; });
    EXPECT_EQ("", answers);
    ASSERT_TRUE(queue.runOne());
    EXPECT_EQ("yes yes ", answers);
    EXPECT_EQ("", folder.names());
    EXPECT_EQ(ExportState::Cancelled, store.exports.newest(1).at(0).state);
    desk.cancel([&](bool cancelled) { answers += cancelled ? "yes " : "no "; });
    EXPECT_EQ("yes yes no ", answers);
}

TEST_F(ExportDeskTest, KeepsAHistory) {
    std::ignore = exported(settings());
    std::filesystem::create_directory(folder / "folder.csv");
    ASSERT_EQ("started", refusal(settings({{"fileName", "folder"}, {"onExists", "replace"}})));
    ASSERT_TRUE(queue.runOne());
    auto const records = store.exports.newest(10);
    ASSERT_EQ(2U, records.size());
    EXPECT_EQ(ExportState::Failed, records[0].state);
    EXPECT_EQ("cannot write " + folder / "folder.csv" + ": Is a directory", records[0].detail);
    EXPECT_EQ(ExportState::Done, records[1].state);
    EXPECT_EQ((std::vector<std::string>{"exporting 0 comments to " + folder / "comments.csv",
                                        "exported " + folder / "comments.csv",
                                        "exporting 0 comments to " + folder / "folder.csv",
                                        "the export failed: " + records[0].detail}),
              messages);
}

} // namespace workbench
