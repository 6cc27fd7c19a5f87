#include "FcpExtension/JsonWriter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace fcp::test {

namespace {

TEST(JsonWriter, WritesCompactTextWithoutSpaces) {
    EXPECT_EQ(writeJson({{"a", {1, 2.5, true, nullptr}}, {"b", "x y"}}),
              R"({"a":[1,2.5,true,null],"b":"x y"})");
}

TEST(JsonWriter, WritesTopLevelScalarsAsFragments) {
    EXPECT_EQ(writeJson(true), "true");
    EXPECT_EQ(writeJson(false), "false");
    EXPECT_EQ(writeJson(12.5), "12.5");
    EXPECT_EQ(writeJson(0), "0");
    EXPECT_EQ(writeJson("a"), "\"a\"");
    EXPECT_EQ(writeJson(nullptr), "null");
}

TEST(JsonWriter, LeavesTextOutsideAsciiAsUtf8) {
    EXPECT_EQ(writeJson("caf\u00E9"), "\"caf\u00E9\"");
}

TEST(JsonWriter, WritesNulAndControlCharactersAsEscapes) {
    EXPECT_EQ(writeJson(std::string("a\0b\n", 4)), R"("a\u0000b\n")");
}

TEST(JsonWriter, RejectsNonFiniteNumbersAtAnyDepth) {
    for (double const bad : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        EXPECT_EQ(writeJson(bad), std::nullopt);
        EXPECT_EQ(writeJson({{"a", {{"b", {1, bad}}}}}), std::nullopt);
    }
    EXPECT_NE(writeJson(std::numeric_limits<double>::max()), std::nullopt);
}

TEST(JsonWriter, RejectsTextThatIsNotUtf8InValuesAndKeys) {
    EXPECT_EQ(writeJson("\xFF"), std::nullopt);
    EXPECT_EQ(writeJson("\xED\xA0\x80"), std::nullopt); // a surrogate
    EXPECT_EQ(writeJson({{"\xC3", 1}}), std::nullopt);
    EXPECT_EQ(writeJson({"fine", {{"deep", "\xC3"}}}), std::nullopt);
}

TEST(JsonWriter, WritesNestingUpToTheLimitOfWhatEntersThePanel) {
    Json value = 1;
    for (int depth = 0; depth < 512; ++depth)
        value = Json::array({std::move(value)});
    EXPECT_EQ(writeJson(value).value().size(), 2U * 512 + 1);
}

} // namespace

} // namespace fcp::test
