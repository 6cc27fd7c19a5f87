#include "Platform/Gtk/Autoresizing.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <ostream>
#include <string>
#include <utility>

namespace fcp {

bool operator==(Span const& a, Span const& b) {
    return a.origin == b.origin && a.length == b.length;
}

std::ostream& operator<<(std::ostream& out, Span const& span) {
    return out << "{" << span.origin << ", " << span.length << "}";
}

namespace test {

namespace {

constexpr auto flexibleSize = Autoresizing::FlexibleWidth | Autoresizing::FlexibleHeight;

void expectRect(Rect const& rect, Rect const& expected) {
    EXPECT_EQ((Span{rect.x, rect.width}), (Span{expected.x, expected.width}));
    EXPECT_EQ((Span{rect.y, rect.height}), (Span{expected.y, expected.height}));
}

} // namespace

// A span of 30 at 20 in a superview that changes by 12.
TEST(Autoresizing, EachSetOfFlexibleParts) {
    struct Case {
        FlexibleParts flexible;
        Span grown;
        Span shrunk;
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
        EXPECT_EQ(autoresized(Span{20, 30}, flexible, 12), grown);
        EXPECT_EQ(autoresized(Span{20, 30}, flexible, -12), shrunk);
        EXPECT_EQ(autoresized(Span{20, 30}, flexible, 0), (Span{20, 30}));
    }
}

TEST(Autoresizing, EachPartOfAMaskMovesItsOwnAxis) {
    struct Case {
        Autoresizing mask;
        Rect expected;
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
        expectRect(autoresized(Rect{1, 2, 30, 40}, mask, 10, 100), expected);
    }
}

TEST(Autoresizing, ABarThatSharesWithItsTopMarginGrowsByHalfAndOutOfALowSuperview) {
    auto const mask = Autoresizing::FlexibleHeight | Autoresizing::FlexibleTopMargin;
    expectRect(autoresized(Rect{8, 8, 3, 684}, mask, 400, -200), {8, 8, 3, 584});
}

TEST(Autoresizing, TheWayBackEndsExactlyWhereItBegan) {
    for (auto const mask : {Autoresizing::FlexibleHeight | Autoresizing::FlexibleTopMargin, flexibleSize,
                            Autoresizing::FlexibleBottomMargin | Autoresizing::FlexibleTopMargin}) {
        Rect frame{8, 8, 3, 684};
        for (auto const& [width, height] : std::initializer_list<std::pair<double, double>>{
                 {400, -201}, {-650, -409}, {-149, -90}, {399, 700}})
            frame = autoresized(frame, mask, width, height);
        expectRect(frame, {8, 8, 3, 684});
    }
}

} // namespace test

} // namespace fcp
