#include "Workbench/ContainerApp/CsvWriter.h"
#include "Workbench/ContainerApp/ExportSamples.h"

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

// What follows the names of the columns.
std::string line(Comment const& comment, std::optional<FrameCount> count = {}) {
    return written(CsvWriter{count, {comment}}).substr(CsvWriter::header().size());
}

std::string line(std::string const& text) {
    return line(comment(text));
}

} // namespace

TEST(CsvWriter, BeginsWithAByteOrderMarkAndTheNamesOfTheColumns) {
    EXPECT_EQ(std::string{byteOrderMark} +
                  "id,timecode,frame,seconds,duration,author,text,resolved,parent,colour\r\n",
              CsvWriter::header());
}

TEST(CsvWriter, WritesOneLineForAComment) {
    auto resolved = comment("Logo too small");
    resolved.resolved = true;
    resolved.duration = 0.1;
    auto const count = FrameCount{{24000, 1001}, 86'400, false};
    EXPECT_EQ("c1,01:00:12:11,299,12.5,0.1,Ana,Logo too small,true,,\r\n", line(resolved, count));
}

TEST(CsvWriter, LeavesFramesOutWithoutARate) {
    EXPECT_EQ("c1,,,12.5,0,Ana,Logo too small,false,,\r\n", line("Logo too small"));
}

TEST(CsvWriter, QuotesWhatWouldBreakALine) {
    EXPECT_EQ("c1,,,12.5,0,Ana,\"one, two\",false,,\r\n", line("one, two"));
    EXPECT_EQ("c1,,,12.5,0,Ana,\"say \"\"no\"\"\",false,,\r\n", line("say \"no\""));
    EXPECT_EQ("c1,,,12.5,0,Ana,\"one\ntwo\",false,,\r\n", line("one\ntwo"));
    EXPECT_EQ("c1,,,12.5,0,Ana,\"one\rtwo\",false,,\r\n", line("one\rtwo"));
}

TEST(CsvWriter, MakesNoTextAFormula) {
    for (auto const* text : {"=1+1", "+1", "-1", "@SUM(A1)"})
        EXPECT_EQ("c1,,,12.5,0,Ana,'" + std::string{text} + ",false,,\r\n", line(text));
    EXPECT_EQ("c1,,,12.5,0,Ana,\"'=1,2\",false,,\r\n", line("=1,2"));
    EXPECT_EQ("c1,,,12.5,0,Ana,1=1,false,,\r\n", line("1=1"));
    auto named = comment("");
    named.id = "=x";
    named.author = "@ana";
    EXPECT_EQ("'=x,,,12.5,0,'@ana,,false,,\r\n", line(named));
}

TEST(CsvWriter, WritesNumbersWithoutLosingADigit) {
    EXPECT_EQ("c1,,,0.04170833333333333,0,Ana,,false,,\r\n", line(comment("", 1001.0 / 24000)));
    EXPECT_EQ("c1,,,100000000000000000000,0,Ana,,false,,\r\n", line(comment("", 1e20)));
}

TEST(CsvWriter, CountsFramesAndLabelsThemAsMltDoes) {
    auto const frames =
        std::vector<std::int64_t>{0, 1, 23, 1799, 1800, 3599, 3600, 17'981, 17'982, 1'900'000};
    for (auto const& [name, count] : sampleRates()) {
        SCOPED_TRACE(name);
        auto const rows = readBack("table", written(CsvWriter{count, contentAt(frames, count).comments}));
        EXPECT_EQ(labelsByMlt(frames, count), each(rows, "timecode"));
        ASSERT_EQ(frames.size(), rows.size());
        for (std::size_t row = 0; row < frames.size(); ++row) {
            EXPECT_EQ(Json(std::to_string(frames[row])), rows[row]["frame"]);
            EXPECT_EQ(secondsAt(frames[row], count.rate), std::stod(rows[row]["seconds"].get<std::string>()));
        }
    }
}

TEST(CsvWriter, CarriesAnyTextAsItWasTyped) {
    auto texts = std::vector<std::string>{"one, two", "\"", ",", "tab\there"};
    for (auto const& text : hostileTexts())
        // What is stored is UTF-8, and what would be a formula gets an apostrophe.
        if (text.typed.find_first_of("=-") != 0 && text.typed.find('\xFF') == std::string::npos)
            texts.push_back(text.typed);
    auto comments = std::vector<Comment>{};
    for (auto const& text : texts)
        comments.push_back(comment(text));
    auto const rows = readBack("table", written(CsvWriter{pal, comments}));
    EXPECT_EQ(Json(texts), each(rows, "text"));
    EXPECT_EQ(10U, rows.at(0).size());
}

TEST(CsvWriter, WritesManyRows) {
    auto const count = FrameCount{{30000, 1001}, 0, true};
    auto const rows = readBack("table", written(CsvWriter{count, longContent(count).comments}));
    ASSERT_EQ(5000U, rows.size());
    EXPECT_EQ("49990", rows.back()["frame"]);
}

} // namespace workbench
