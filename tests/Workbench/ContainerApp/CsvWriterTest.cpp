#include "Workbench/ContainerApp/CsvWriter.h"
#include "Workbench/ContainerApp/Json.h"
#include "Workbench/ContainerApp/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace workbench {

namespace {

constexpr auto byteOrderMark = "\xEF\xBB\xBF";

Comment comment(std::string const& text, double start = 12.5) {
    auto made = Comment{};
    made.id = "c1";
    made.author = "Ana";
    made.text = text;
    made.start = start;
    return made;
}

std::string written(CsvWriter const& writer) {
    auto text = std::string{};
    writer.write([&text](std::string_view piece) { text += piece; });
    return text;
}

// What follows the names of the columns.
std::string line(Comment const& comment, std::optional<FrameCount> count = {}) {
    return written({count, {comment}}).substr(CsvWriter::header().size());
}

std::string line(std::string const& text) {
    return line(comment(text));
}

// What somebody else's reader makes of it.
Json readByPython(std::string const& csv) {
    auto const folder = TemporaryFolder{};
    writeFile(folder / "x.csv", csv);
    writeFile(folder / "read.py", "import csv, json, sys\n"
                                  "with open(sys.argv[1], encoding='utf-8-sig', newline='') as file:\n"
                                  "    print(json.dumps(list(csv.DictReader(file, strict=True))))\n");
    return Json::parse(outputOf("python3 '" + folder / "read.py" + "' '" + folder / "x.csv" + "'"));
}

} // namespace

TEST(CsvWriter, BeginsWithAByteOrderMarkAndTheNamesOfTheColumns) {
    EXPECT_EQ(std::string{byteOrderMark} + "id,timecode,frame,seconds,duration,author,text,resolved\r\n",
              CsvWriter::header());
}

TEST(CsvWriter, WritesOneLineForAComment) {
    auto resolved = comment("Logo too small");
    resolved.resolved = true;
    resolved.duration = 0.1;
    auto const count = FrameCount{{24000, 1001}, 86'400, false};
    EXPECT_EQ("c1,01:00:12:11,299,12.5,0.1,Ana,Logo too small,true\r\n", line(resolved, count));
}

TEST(CsvWriter, LeavesFramesOutWithoutARate) {
    EXPECT_EQ("c1,,,12.5,0,Ana,Logo too small,false\r\n", line("Logo too small"));
}

TEST(CsvWriter, QuotesWhatWouldBreakALine) {
    EXPECT_EQ("c1,,,12.5,0,Ana,\"one, two\",false\r\n", line("one, two"));
    EXPECT_EQ("c1,,,12.5,0,Ana,\"say \"\"no\"\"\",false\r\n", line("say \"no\""));
    EXPECT_EQ("c1,,,12.5,0,Ana,\"one\ntwo\",false\r\n", line("one\ntwo"));
    EXPECT_EQ("c1,,,12.5,0,Ana,\"one\rtwo\",false\r\n", line("one\rtwo"));
}

TEST(CsvWriter, MakesNoTextAFormula) {
    for (auto const* text : {"=1+1", "+1", "-1", "@SUM(A1)"})
        EXPECT_EQ("c1,,,12.5,0,Ana,'" + std::string{text} + ",false\r\n", line(text));
    EXPECT_EQ("c1,,,12.5,0,Ana,\"'=1,2\",false\r\n", line("=1,2"));
    EXPECT_EQ("c1,,,12.5,0,Ana,1=1,false\r\n", line("1=1"));
    auto named = comment("");
    named.id = "=x";
    named.author = "@ana";
    EXPECT_EQ("'=x,,,12.5,0,'@ana,,false\r\n", line(named));
}

TEST(CsvWriter, WritesNumbersWithoutLosingADigit) {
    EXPECT_EQ("c1,,,0.04170833333333333,0,Ana,,false\r\n", line(comment("", 1001.0 / 24000)));
    EXPECT_EQ("c1,,,100000000000000000000,0,Ana,,false\r\n", line(comment("", 1e20)));
}

TEST(CsvWriter, IsReadBySomebodyElsesReader) {
    auto const texts =
        std::vector<std::string>{"plain",        "one, two", "say \"no\"", "one\r\ntwo\n", "", " spaces ",
                                 "Café 日本 🎬", "\"",       ",",          "tab\there"};
    auto comments = std::vector<Comment>{};
    for (auto const& text : texts)
        comments.push_back(comment(text));
    auto const rows = readByPython(written({FrameCount{{25, 1}, 0, false}, comments}));
    ASSERT_EQ(texts.size(), rows.size());
    for (std::size_t row = 0; row < texts.size(); ++row) {
        EXPECT_EQ(texts[row], rows[row]["text"].get<std::string>());
        EXPECT_EQ("00:00:12:12", rows[row]["timecode"].get<std::string>());
        EXPECT_EQ("312", rows[row]["frame"].get<std::string>());
        EXPECT_EQ("12.5", rows[row]["seconds"].get<std::string>());
        EXPECT_EQ(8U, rows[row].size());
    }
}

} // namespace workbench
