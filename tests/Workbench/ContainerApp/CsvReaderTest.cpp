#include "Workbench/ContainerApp/CsvReader.h"

#include "Workbench/ContainerApp/CsvProtection.h"
#include "Workbench/ContainerApp/CsvTable.h"
#include "Workbench/ContainerApp/ImportError.h"

#include <gtest/gtest.h>

namespace workbench {

namespace {

constexpr auto pal = FrameCount{{25, 1}, 90'000, false};

using Fields = std::vector<std::string>;

// The fields of all rows.
std::vector<Fields> fieldsIn(std::string_view text) {
    auto fields = std::vector<Fields>{};
    for (auto const& row : readCsv(text).rows)
        fields.push_back(row.fields);
    return fields;
}

std::vector<ImportedComment> read(std::string const& text, std::optional<FrameCount> const& count = pal) {
    return readCsvComments(text, count);
}

// What is wrong with a file.
std::string complaint(std::string const& text, std::optional<FrameCount> const& count = pal) {
    try {
        return "read " + std::to_string(read(text, count).size());
    } catch (ImportError const& error) {
        return error.what();
    }
}

double startIn(std::string const& text, std::optional<FrameCount> const& count = pal) {
    return read(text, count).at(0).start;
}

} // namespace

TEST(CsvTable, ReadsLinesThatEndInEitherWayWithOrWithoutAByteOrderMark) {
    auto const expected = std::vector<Fields>{{"a", "b"}, {"1", "2"}};
    for (auto const* text : {"a,b\r\n1,2\r\n", "a,b\n1,2\n", "a,b\n1,2",
                             "\xEF\xBB\xBF"
                             "a,b\r\n1,2",
                             "a,b\r\n1,2\r", "a,b\n\n1,2\r\n\r\n"})
        EXPECT_EQ(expected, fieldsIn(text)) << text;
}

TEST(CsvTable, ReadsQuotedFields) {
    EXPECT_EQ((std::vector<Fields>{{"one, two", "say \"no\"", "one\ntwo\r\nthree", ""}}),
              fieldsIn("\"one, two\",\"say \"\"no\"\"\",\"one\ntwo\r\nthree\",\"\"\r\n"));
}

TEST(CsvTable, TakesAQuoteWithinAFieldAsItIs) {
    EXPECT_EQ((std::vector<Fields>{{"say \"no\"", "a\rb"}}), fieldsIn("say \"no\",a\rb\n"));
}

TEST(CsvTable, SeesWhatPartsTheFields) {
    EXPECT_EQ((std::vector<Fields>{{"a", "b"}, {"1,5", "2"}}), fieldsIn("a;b\n1,5;2\n"));
    EXPECT_EQ((std::vector<Fields>{{"a", "b"}, {"1;2", "3"}}), fieldsIn("a\tb\n1;2\t3\n"));
}

TEST(CsvTable, CountsTheLinesOfTheFile) {
    auto const table = readCsv("a,b\n\"one\ntwo\",2\r\n\n3,4");
    ASSERT_EQ(3U, table.rows.size());
    EXPECT_EQ(1U, table.rows[0].line);
    EXPECT_EQ(2U, table.rows[1].line);
    EXPECT_EQ(5U, table.rows[2].line);
}

TEST(CsvTable, HoldsNothingInAnEmptyFile) {
    EXPECT_TRUE(readCsv("").rows.empty());
    EXPECT_TRUE(readCsv("\xEF\xBB\xBF").rows.empty());
    EXPECT_TRUE(readCsv("\r\n\n").rows.empty());
}

TEST(CsvProtection, GivesBackEveryTextAsItWas) {
    for (auto const* text : {"=1+1", "'=1+1", "''@x", "-", "'", "''", "'quoted'", "", "plain", "1-1"})
        EXPECT_EQ(text, unprotected(protectedFromFormulas(text)));
    EXPECT_EQ("'=1+1", protectedFromFormulas("=1+1"));
    EXPECT_EQ("''=1+1", protectedFromFormulas("'=1+1"));
    EXPECT_EQ("'quoted'", protectedFromFormulas("'quoted'"));
}

TEST(CsvReader, FindsTheColumnsByTheirNames) {
    auto const comments = read("Text,more,RESOLVED, Start ,author,Id,parent,color,duration\n"
                               "Logo,x,TRUE,1.5,Ana,c1,c0,#f00,2\n");
    ASSERT_EQ(1U, comments.size());
    auto const& comment = comments[0];
    EXPECT_EQ("c1", comment.id);
    EXPECT_EQ("c0", comment.parentId);
    EXPECT_EQ("Ana", comment.author);
    EXPECT_EQ("Logo", comment.text);
    EXPECT_EQ(1.5, comment.start);
    EXPECT_EQ(2, comment.duration);
    EXPECT_EQ("#f00", comment.colour);
    EXPECT_EQ(true, comment.resolved);
    EXPECT_EQ(2U, comment.line);
}

TEST(CsvReader, LeavesOutWhatTheFileHasNoColumnFor) {
    auto const comment = read("seconds,text\n1,a\n").at(0);
    EXPECT_FALSE(comment.id || comment.parentId || comment.author || comment.duration || comment.colour ||
                 comment.resolved);
}

TEST(CsvReader, TakesAnEmptyFieldForNothing) {
    auto const comment = read("seconds,text,id,parent,duration,resolved,colour\n1\n").at(0);
    EXPECT_FALSE(comment.id);
    EXPECT_EQ("", comment.text);
    EXPECT_EQ("", comment.parentId);
    EXPECT_EQ("", comment.colour);
    EXPECT_EQ(0, comment.duration);
    EXPECT_EQ(false, comment.resolved);
}

TEST(CsvReader, TakesTheTimeFromTheFirstColumnThatTellsIt) {
    EXPECT_EQ(3, startIn("timecode,frame,seconds,text\n01:00:01:00,50,3,a\n"));
    EXPECT_EQ(2, startIn("timecode,frame,seconds,text\n01:00:01:00,50,,a\n"));
    EXPECT_EQ(1, startIn("timecode,frame,seconds,text\n01:00:01:00,,,a\n"));
    EXPECT_EQ(50 * 1001 / 30000.0, startIn("frame,text\n50,a\n", FrameCount{{30000, 1001}, 0, true}));
}

TEST(CsvReader, ReadsFractionsAfterACommaWhereCommasPartNoFields) {
    EXPECT_EQ(12.5, startIn("seconds;text\n12,5;a, b\n"));
    EXPECT_EQ(12.5, startIn("seconds;text\n12.5;a, b\n"));
}

TEST(CsvReader, TakesOffTheApostropheThatProtectsAText) {
    auto const comment = read("seconds,text,author,id\n1,'=1+1,'@ana,'-7\n").at(0);
    EXPECT_EQ("=1+1", comment.text);
    EXPECT_EQ("@ana", comment.author);
    EXPECT_EQ("-7", comment.id);
    EXPECT_EQ("'tis", read("seconds,text\n1,'tis\n").at(0).text);
}

TEST(CsvReader, ReadsAFileWithoutComments) {
    EXPECT_TRUE(read("seconds,text\r\n").empty());
}

TEST(CsvReader, SaysWhichColumnsAreMissing) {
    auto const missing = std::string{R"(line 1: the first line has to name the columns, "text" and one of )"
                                     R"("seconds", "frame" and "timecode" among them: add such a line, or )"
                                     R"(the column that lacks)"};
    for (auto const* text : {"", "Logo,Ana\n", "seconds,author\n1,a\n", "text\na\n"})
        EXPECT_EQ(missing, complaint(text)) << text;
    EXPECT_EQ("line 1: the column \"text\" stands there twice: remove one", complaint("text,seconds,text\n"));
}

TEST(CsvReader, SaysWhichLineIsWrongAndWhatItTakes) {
    EXPECT_EQ(R"(line 3: "seconds" is "soon", but it takes a number from 0, as 12.5)",
              complaint("seconds,text\n1,a\nsoon,b\n"));
    for (auto const* number : {"-1", "nan", "inf", "1e999", "1s", "0x10"})
        EXPECT_EQ(0U,
                  complaint("seconds,text\n" + std::string{number} + ",a\n").find("line 2: \"seconds\" is "))
            << number;
    EXPECT_EQ(R"(line 2: "frame" is "1.5", but it takes a whole number, as 299)",
              complaint("frame,text\n1.5,a\n"));
    EXPECT_EQ(R"(line 2: "timecode" is "01:00:00:25", but it takes a timecode of the sequence's rate, as )"
              "01:00:00:00",
              complaint("timecode,text\n01:00:00:25,a\n"));
    EXPECT_EQ(R"(line 2: "timecode" is "00:59:59:24", but it takes none before the sequence's first one, )"
              "01:00:00:00",
              complaint("timecode,text\n00:59:59:24,a\n"));
    EXPECT_EQ(R"(line 2: "resolved" is "maybe", but it takes true or false)",
              complaint("seconds,text,resolved\n1,a,maybe\n"));
    EXPECT_EQ(R"(line 2: the comment has no time: fill in "seconds", "frame" or "timecode")",
              complaint("seconds,text\n,a\n"));
    EXPECT_EQ("line 2: there are 3 fields, but the first line names 2 columns: put quotes around a text that "
              "holds the separator",
              complaint("seconds,text\n1,a, b\n"));
    EXPECT_EQ("read 1", complaint("seconds,text\n1,a,,\n"));
}

TEST(CsvReader, SaysThatFramesNeedARate) {
    auto const needed = std::string{"line 2: nobody knows the frame rate that the time counts in: open the "
                                    R"(sequence in the editor, or fill in "seconds")"};
    EXPECT_EQ(needed, complaint("frame,text\n1,a\n", {}));
    EXPECT_EQ(needed, complaint("timecode,text\n00:00:01:00,a\n", {}));
    EXPECT_EQ("read 1", complaint("seconds,text\n1,a\n", {}));
}

TEST(CsvReader, SaysWhereAQuoteIsWrong) {
    EXPECT_EQ("line 2: a quote opens here and never closes: close it, or write a quote within a text twice",
              complaint("seconds,text\n1,\"a\n2,b\n"));
    EXPECT_EQ("line 3: there is text behind a closing quote: put quotes around the whole field, and write a "
              "quote within it twice",
              complaint("seconds,text\n1,\"a\nb\"c\n"));
}

} // namespace workbench
