#include "Platform/Gtk/Autoresizing.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace fcp::test {

namespace {

using Numbers = std::vector<double>; // origin and length, or a frame's x, y, width and height

Numbers numbers(Span const& span) {
    return {span.origin, span.length};
}

Numbers numbers(Rect const& rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}

constexpr auto flexibleSize = Autoresizing::FlexibleWidth | Autoresizing::FlexibleHeight;

} // namespace

// A span of 30 at 20 in a superview that changes by 12.
TEST(Autoresizing, EachSetOfFlexibleParts) {
    struct Case {
        FlexibleParts flexible;
        Numbers grown;
        Numbers shrunk;
    };

    for (auto const& [flexible, grown, shrunk] : {
             Case{{false, false, false}, {20, 30}, {20, 30}},
             Case{{true, false, false}, {32, 30}, {8, 30}},
             Case{{false, true, false}, {20, 42}, {20, 18}},
             Case{{false, false, true}, {20, 30}, {20, 30}},
             Case{{true, true, false}, {26, 36}, {14, 24}},
             Case{{true, false, true}, {26, 30}, {14, 30}},
             Case{{false, true, true}, {20, 36}, {20, 24}},
             Case{{true, true, true}, {24, 34}, {16, 26}},
         }) {
        SCOPED_TRACE(std::to_string(flexible.marginBefore) + std::to_string(flexible.length) +
                     std::to_string(flexible.marginAfter));
        EXPECT_EQ(numbers(autoresized(Span{20, 30}, flexible, 12)), grown);
        EXPECT_EQ(numbers(autoresized(Span{20, 30}, flexible, -12)), shrunk);
        EXPECT_EQ(numbers(autoresized(Span{20, 30}, flexible, 0)), (Numbers{20, 30}));
    }
}

TEST(Autoresizing, EachPartOfAMaskMovesItsOwnAxis) {
    struct Case {
        Autoresizing mask{};
        Numbers expected;
    };

    for (auto const& [mask, expected] : {
             Case{Autoresizing::None, {1, 2, 30, 40}},
             Case{Autoresizing::FlexibleLeftMargin, {11, 2, 30, 40}},
             Case{Autoresizing::FlexibleWidth, {1, 2, 40, 40}},
             Case{Autoresizing::FlexibleRightMargin, {1, 2, 30, 40}},
             Case{Autoresizing::FlexibleBottomMargin, {1, 102, 30, 40}},
             Case{Autoresizing::FlexibleHeight, {1, 2, 30, 140}},
             Case{Autoresizing::FlexibleTopMargin, {1, 2, 30, 40}},
             Case{flexibleSize, {1, 2, 40, 140}},
         }) {
        SCOPED_TRACE(static_cast<unsigned>(mask));
        EXPECT_EQ(numbers(autoresized(Rect{1, 2, 30, 40}, mask, 10, 100)), expected);
    }
}

TEST(Autoresizing, ABarThatSharesWithItsTopMarginGrowsByHalfAndOutOfALowSuperview) {
    auto const mask = Autoresizing::FlexibleHeight | Autoresizing::FlexibleTopMargin;
    EXPECT_EQ(numbers(autoresized(Rect{8, 8, 3, 684}, mask, 400, -200)), (Numbers{8, 8, 3, 584}));
}

TEST(Autoresizing, TheWayBackEndsExactlyWhereItBegan) {
    for (auto const mask : {Autoresizing::FlexibleHeight | Autoresizing::FlexibleTopMargin, flexibleSize,
                            Autoresizing::FlexibleBottomMargin | Autoresizing::FlexibleTopMargin}) {
        Rect frame{8, 8, 3, 684};
        for (auto const& [width, height] : std::initializer_list<std::pair<double, double>>{
                 {400, -201}, {-650, -409}, {-149, -90}, {399, 700}})
            frame = autoresized(frame, mask, width, height);
        EXPECT_EQ(numbers(frame), (Numbers{8, 8, 3, 684}));
    }
}

} // namespace fcp::test
