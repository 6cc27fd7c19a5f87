#include "Workbench/HostEditor/VariantJson.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace workbench {
namespace {

// What becomes of a value in the toolkit's own notation.
std::string jsonOfText(char const* text) {
    GError* error = nullptr;
    auto* const value = g_variant_parse(nullptr, text, nullptr, nullptr, &error);
    EXPECT_EQ(error, nullptr) << text << ": " << (error ? error->message : "");
    return jsonOf(Glib::VariantBase{value, false}).dump();
}

TEST(VariantJson, KeepsNumbersTextsAndTruth) {
    EXPECT_EQ(jsonOfText("(true, byte 0xff, int16 -5, uint16 65535, -7, uint32 4294967295)"),
              "[true,255,-5,65535,-7,4294967295]");
    EXPECT_EQ(jsonOfText("(int64 -9223372036854775808, uint64 18446744073709551615, 0.1, 'Größe', "
                         "objectpath '/a')"),
              R"([-9223372036854775808,18446744073709551615,0.1,"Größe","/a"])");
}

TEST(VariantJson, UnpacksDictionariesAndVariants) {
    EXPECT_EQ(jsonOfText("{'b': <1>, 'a': <[<'x'>, <{'c': <2.5>}>]>}"), R"({"a":["x",{"c":2.5}],"b":1})");
    EXPECT_EQ(jsonOfText("@a{sv} {}"), "{}");
    EXPECT_EQ(jsonOfText("@as []"), "[]");
    EXPECT_EQ(jsonOfText("<<<'deep'>>>"), R"("deep")");
}

// The channel's own way to say it.
TEST(VariantJson, TakesAnEmptySignatureForNull) {
    EXPECT_EQ(jsonOfText("{'result': <signature ''>}"), R"({"result":null})");
    EXPECT_EQ(jsonOfText("signature 'as'"), R"("'as'")");
}

TEST(VariantJson, WritesWhatJsonDoesNotKnowAsText) {
    EXPECT_EQ(jsonOfText("(inf, handle 5)"), R"(["inf","5"])");
    EXPECT_EQ(jsonOfText("{1: 'one'}"), R"(["{1, 'one'}"])");
}

TEST(VariantJson, HasNothingToSayOfNothing) {
    EXPECT_EQ(jsonOf({}).dump(), "null");
}

} // namespace
} // namespace workbench
