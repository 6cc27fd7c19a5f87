#include "Workbench/ContainerApp/MarkerColour.h"

#include <gtest/gtest.h>

#include <array>

namespace workbench {

TEST(MarkerColour, ReadsWhatPagesWrite) {
    EXPECT_EQ((MarkerColour{0x12, 0xAB, 0xFF}), readColour("#12abFF"));
    EXPECT_EQ((MarkerColour{0x12, 0xAB, 0xFF}), readColour("#12abFF80"));
    EXPECT_EQ((MarkerColour{0x11, 0xAA, 0xFF}), readColour("#1aF"));
    EXPECT_EQ((MarkerColour{255, 165, 0}), readColour("Orange"));
}

TEST(MarkerColour, TakesNothingElseForAColour) {
    for (auto const* text :
         {"", "#", "#12", "#1234567", "#12345g", "#-12345", "reddish", "rgb(1,2,3)", " red"})
        EXPECT_FALSE(readColour(text)) << text;
}

TEST(MarkerColour, WritesDigits) {
    EXPECT_EQ("#0a00ff", hexText({10, 0, 255}));
}

TEST(MarkerColour, FindsTheMostAlikeInAPalette) {
    constexpr std::array palette{NamedColour{"red", {255, 0, 0}}, NamedColour{"blue", {0, 0, 255}},
                                 NamedColour{"white", {255, 255, 255}}};
    EXPECT_EQ(0U, nearest({200, 30, 30}, palette));
    EXPECT_EQ(1U, nearest({20, 60, 200}, palette));
    EXPECT_EQ(2U, nearest({230, 230, 210}, palette));
}

} // namespace workbench
