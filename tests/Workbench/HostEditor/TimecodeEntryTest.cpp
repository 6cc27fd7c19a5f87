#include "Workbench/HostEditor/TimecodeEntry.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

constexpr FrameRate whole{25, 1};
constexpr FrameRate slow{30000, 1001};
constexpr std::int64_t Day = 10'000'000;

// The frame as text, or the complaint.
std::string entered(std::string_view typed, FrameRate rate = whole, std::int64_t from = 1000,
                    std::int64_t length = Day) {
    auto const answer = readTimecode(typed, {rate, length, from});
    auto const* const frame = std::get_if<std::int64_t>(&answer);
    return frame ? std::to_string(*frame) : std::get<std::string>(answer);
}

TEST(TimecodeEntry, TakesFieldsFromTheRight) {
    EXPECT_EQ(entered("01:02:03:04"), std::to_string(3723 * 25 + 4));
    EXPECT_EQ(entered("2:03:04"), std::to_string(123 * 25 + 4));
    EXPECT_EQ(entered("3:04"), "79");
    EXPECT_EQ(entered("4"), "4");
    EXPECT_EQ(entered(" 3;04 "), "79");
    EXPECT_EQ(entered("3.04"), "79");
    EXPECT_EQ(entered("3,"), "75");
    EXPECT_EQ(entered("1::"), "1500");
}

TEST(TimecodeEntry, TakesDigitsAlone) {
    EXPECT_EQ(entered("304"), "79");
    EXPECT_EQ(entered("20304"), std::to_string(123 * 25 + 4));
    EXPECT_EQ(entered("01020304"), std::to_string(3723 * 25 + 4));
    EXPECT_EQ(entered("1000", {120, 1}), "120");
}

TEST(TimecodeEntry, LetsTheFirstFieldBeLarge) {
    EXPECT_EQ(entered("90:00"), "2250");
    EXPECT_EQ(entered("90"), "90");
}

TEST(TimecodeEntry, MovesByWhatIsSigned) {
    EXPECT_EQ(entered("+1"), "1001");
    EXPECT_EQ(entered("-1"), "999");
    EXPECT_EQ(entered("+ 2:00"), "1050");
    EXPECT_EQ(entered("-40:00"), "0");
    EXPECT_EQ(entered("+100"), "1025");
}

TEST(TimecodeEntry, MovesTheLabelByTimeAndCountsFrames) {
    // From 00:00:59;29: the next frame is 00:01:00;02.
    EXPECT_EQ(entered("+1", slow, 1799), "1800");
    // From 00:00:01;00 by a minute, to 00:01:01;00.
    EXPECT_EQ(entered("+1:00:00", slow, 30), std::to_string(61 * 30 - 2));
    // From 00:00:00;01 by a minute: that label is left out, the next is 00:01:00;02.
    EXPECT_EQ(entered("+1:00:00", slow, 1), "1800");
    EXPECT_EQ(entered("-10:00:00", slow, 17982), "0");
}

TEST(TimecodeEntry, SaysWhatIsWrong) {
    EXPECT_EQ(entered(""), "type a timecode, such as 1:02:03");
    EXPECT_EQ(entered("+"), "type a timecode, such as 1:02:03");
    EXPECT_EQ(entered("1:2x"), "a timecode has digits and colons only: 1:2x");
    EXPECT_EQ(entered("1:-2"), "a timecode has digits and colons only: 1:-2");
    EXPECT_EQ(entered("1:2:3:4:5"), "a timecode has four fields: hours, minutes, seconds, frames");
    EXPECT_EQ(entered("0:25"), "25 frames: there are 0 to 24");
    EXPECT_EQ(entered("1:60:00"), "60 seconds: there are 0 to 59");
    EXPECT_EQ(entered("1:75:00:00"), "75 minutes: there are 0 to 59");
    EXPECT_EQ(entered("1234567890:00"), "1234567890 is too large");
    EXPECT_EQ(entered("9999999999999999999999"), "9999999999999999 is too large");
}

TEST(TimecodeEntry, SaysWhereTheSequenceEnds) {
    EXPECT_EQ(entered("1:00", whole, 0, 20), "the last frame is 00:00:00:19");
    EXPECT_EQ(entered("19", whole, 0, 20), "19");
    EXPECT_EQ(entered("+10", whole, 15, 20), "the last frame is 00:00:00:19");
    EXPECT_EQ(entered("-16", whole, 15, 20), "that lies before the beginning");
    EXPECT_EQ(entered("-1:00", whole, 15, 20), "that lies before the beginning");
    EXPECT_EQ(entered("999999999:00:00:00"), "the last frame is 111:06:39:24");
}

TEST(TimecodeEntry, NamesTheLabelThatIsLeftOutAndTheNext) {
    EXPECT_EQ(entered("1:00:00", slow), "00:01:00;00 is left out; the next is 00:01:00;02");
    EXPECT_EQ(entered("1:00:01", slow), "00:01:00;01 is left out; the next is 00:01:00;02");
    EXPECT_EQ(entered("1:00:02", slow), "1800");
    EXPECT_EQ(entered("10:00:00", slow), "17982");
    EXPECT_EQ(entered("1:00:03", {60000, 1001}), "00:01:00;03 is left out; the next is 00:01:00;04");
}

} // namespace
} // namespace workbench
