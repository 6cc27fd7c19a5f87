#include "Workbench/HostEditor/FileFault.h"

#include "Workbench/HostEditor/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace workbench {
namespace {

using namespace std::string_literals;

// A box of an MP4 file: its size in four bytes, its kind, its content.
std::string box(std::string const& kind, std::string const& content) {
    auto const size = static_cast<std::uint32_t>(8 + content.size());
    return std::string{static_cast<char>(size >> 24), static_cast<char>(size >> 16),
                       static_cast<char>(size >> 8), static_cast<char>(size)} +
           kind + content;
}

std::string const movie = box("ftyp", "isom") + box("moov", "....") + box("mdat", std::string(600, 'x'));
std::string const matroska =
    "\x1a\x45\xdf\xa3\x84"s + "head" + "\x18\x53\x80\x67\x42\x58"s + std::string(600, 'x'); // 0x258 bytes

TEST(FileFault, FindsNothingAgainstWholeFiles) {
    TemporaryFolder const folder;
    EXPECT_EQ(faultOfFile(folder.write("a.mp4", movie)), "");
    EXPECT_EQ(faultOfFile(folder.write("a.mkv", matroska)), "");
    EXPECT_EQ(faultOfFile(folder.write("a.bin", "anything else")), "");
}

TEST(FileFault, SaysHowMuchOfAFilmIsThere) {
    TemporaryFolder const folder;
    EXPECT_EQ(faultOfFile(folder.write("a.mp4", movie.substr(0, 400))),
              "the file is cut short: it holds 400 of " + std::to_string(movie.size()) + " bytes");
    EXPECT_EQ(faultOfFile(folder.write("a.mkv", matroska.substr(0, 400))),
              "the file is cut short: it holds 400 of " + std::to_string(matroska.size()) + " bytes");
}

TEST(FileFault, NoticesASingleByte) {
    TemporaryFolder const folder;
    EXPECT_NE(faultOfFile(folder.write("a.mp4", movie.substr(0, movie.size() - 1))), "");
    EXPECT_NE(faultOfFile(folder.write("a.mkv", matroska.substr(0, matroska.size() - 1))), "");
}

TEST(FileFault, ReadsLongSizes) {
    TemporaryFolder const folder;
    auto const head = box("ftyp", "isom") + "\0\0\0\1mdat\0\0\0\0\0\0\1\0"s; // 256 bytes in all
    EXPECT_EQ(faultOfFile(folder.write("whole.mp4", head + std::string(240, 'x'))), "");
    EXPECT_NE(faultOfFile(folder.write("cut.mp4", head + std::string(239, 'x'))), "");
}

TEST(FileFault, AcceptsWhatReachesToTheEndOfTheFile) {
    TemporaryFolder const folder;
    EXPECT_EQ(faultOfFile(folder.write("open.mp4", box("ftyp", "isom") + "\0\0\0\0mdatxxxx"s)), "");
    EXPECT_EQ(faultOfFile(folder.write("live.mkv", "\x1a\x45\xdf\xa3\x80"s +
                                                       "\x18\x53\x80\x67\x01\xff\xff\xff\xff\xff\xff\xff"s +
                                                       "xxxx")),
              "");
}

TEST(FileFault, IsNotLedAstrayBySizesThatMakeNoSense) {
    TemporaryFolder const folder;
    EXPECT_EQ(faultOfFile(folder.write("tiny.mp4", box("ftyp", "isom") + "\0\0\0\3mdatxxxx"s)), "");
    EXPECT_NE(faultOfFile(folder.write("huge.mp4", box("ftyp", "isom") +
                                                       "\0\0\0\1mdat\xff\xff\xff\xff\xff\xff\xff\xff"s)),
              "");
    EXPECT_EQ(faultOfFile(folder.write("short.mkv", "\x1a\x45\xdf\xa3"s)), "");
}

TEST(FileFault, NamesWhatIsNoFile) {
    TemporaryFolder const folder;
    EXPECT_EQ(faultOfFile(folder.path / "nowhere.mp4"), "there is no such file");
    EXPECT_EQ(faultOfFile(folder.path), "it is a folder");
    EXPECT_EQ(faultOfFile(folder.write("empty.mp4", "")), "the file is empty");
    EXPECT_EQ(faultOfFile("/dev/null"), "it is no ordinary file");
}

TEST(FileFault, DoesNotWaitForAPipe) {
    TemporaryFolder const folder;
    auto const pipe = folder.path / "pipe.mp4";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(faultOfFile(pipe), "it is no ordinary file");
}

TEST(Text, IsToldFromMedia) {
    TemporaryFolder const folder;
    EXPECT_TRUE(beginsAsText(folder.write("a", "Grüße\n")));
    EXPECT_TRUE(beginsAsText(folder.write("b", std::string(1023, 'a') + "ü"))); // cut in two by the reader
    EXPECT_FALSE(beginsAsText(folder.write("bell", "\a\a\a\a")));
    EXPECT_FALSE(beginsAsText(folder.write("c", movie)));
    EXPECT_FALSE(beginsAsText(folder.write("d", matroska)));
    EXPECT_FALSE(beginsAsText(folder.write("e", "<?xml version='1.0'?><svg width='8' height='8'/>")));
}

} // namespace
} // namespace workbench
