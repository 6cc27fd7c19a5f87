#include "FcpExtension/OverlayViews.h"

#include <gtest/gtest.h>

namespace fcp {

// Found by the arguments' namespace, into which an unnamed one does not open.
// NOLINTBEGIN(misc-use-internal-linkage)
inline bool operator==(Rect const& a, Rect const& b) {
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

inline bool operator==(Color const& a, Color const& b) {
    return a.red == b.red && a.green == b.green && a.blue == b.blue && a.alpha == b.alpha;
}

// NOLINTEND(misc-use-internal-linkage)

namespace test {

namespace {

constexpr Rect bounds{0, 0, 400, 700};
constexpr auto flexibleSize = Autoresizing::FlexibleWidth | Autoresizing::FlexibleHeight;

void expectLabel(ViewDescription const& view, std::string const& text, Rect const& frame, double size,
                 FontWeight weight, Color const& color) {
    auto const& label = std::get<LabelContent>(view.content);
    EXPECT_EQ(label.text, text);
    EXPECT_TRUE(view.frame == frame);
    EXPECT_EQ(label.font.size, size);
    EXPECT_EQ(label.font.weight, weight);
    EXPECT_TRUE(label.color == color);
    EXPECT_EQ(view.autoresizing, Autoresizing::None);
    EXPECT_FALSE(view.layerBackground);
}

TEST(OverlayViews, ContainerIs400By700AndDark) {
    auto const view = containerView();
    EXPECT_TRUE((view.frame == Rect{0, 0, 400, 700}));
    EXPECT_EQ(view.autoresizing, flexibleSize);
    EXPECT_TRUE((view.layerBackground == Color{0.09, 0.09, 0.08, 1.0}));
}

TEST(OverlayViews, LoadingOverlayIsTranslucentAndTheErrorOverlayOpaqueAndHidden) {
    auto const loading = loadingOverlayView(bounds);
    EXPECT_TRUE(loading.frame == bounds);
    EXPECT_EQ(loading.autoresizing, flexibleSize);
    EXPECT_TRUE((loading.layerBackground == Color{0.09, 0.09, 0.08, 0.92}));
    EXPECT_FALSE(loading.hidden);
    auto const error = errorOverlayView(bounds);
    EXPECT_TRUE(error.frame == bounds);
    EXPECT_EQ(error.autoresizing, flexibleSize);
    EXPECT_TRUE((error.layerBackground == Color{0.09, 0.09, 0.08, 1.0}));
    EXPECT_TRUE(error.hidden);
    EXPECT_EQ(error.accessibleRole, AccessibleRole::Alert);
}

TEST(OverlayViews, SpinnerIs16PointsWideBesideTheStatus) {
    auto const spinner = loadingSpinner();
    EXPECT_TRUE((spinner.frame == Rect{20, 30, 16, 16}));
    EXPECT_TRUE(std::holds_alternative<SpinnerContent>(spinner.content));
    EXPECT_EQ(spinner.autoresizing, Autoresizing::None);
}

TEST(OverlayViews, StatusLabelIs350PointsWideInAContainerOf400) {
    expectLabel(loadingStatusLabel(bounds), "Opening your review workspace…", {42, 30, 350, 16}, 10,
                FontWeight::Regular, {0.6, 0.59, 0.55, 1.0});
}

TEST(OverlayViews, ErrorLabelsAre372PointsWideInAContainerOf400) {
    expectLabel(offlineLabel(bounds), "ZELVIX / OFFLINE", {20, 70, 372, 12}, 9, FontWeight::Bold,
                {0.88, 0.4, 0.32, 1.0});
    expectLabel(connectionPausedLabel(bounds), "Connection paused", {20, 48, 372, 18}, 14,
                FontWeight::Semibold, {0.94, 0.93, 0.89, 1.0});
    expectLabel(errorDetailText(bounds), "Check your connection and try again.", {20, 28, 372, 14}, 10,
                FontWeight::Regular, {0.6, 0.59, 0.55, 1.0});
}

TEST(OverlayViews, OnlyTheDetailLabelWrapsByWordsToThreeLines) {
    auto const detail = std::get<LabelContent>(errorDetailText(bounds).content);
    EXPECT_EQ(detail.lineBreak, LineBreak::WordWrapping);
    EXPECT_EQ(detail.maximumNumberOfLines, 3);
    for (auto const& view : {loadingStatusLabel(bounds), offlineLabel(bounds), connectionPausedLabel(bounds)})
        EXPECT_EQ(std::get<LabelContent>(view.content).lineBreak, LineBreak::TruncatingTail);
}

TEST(OverlayViews, AccentBarIs684PointsHighInAContainerOf700) {
    auto const bar = accentBar(bounds);
    EXPECT_TRUE((bar.frame == Rect{8, 8, 3, 684}));
    EXPECT_EQ(bar.autoresizing, Autoresizing::FlexibleHeight | Autoresizing::FlexibleTopMargin);
    EXPECT_TRUE((bar.layerBackground == Color{0.88, 0.4, 0.32, 1.0}));
}

TEST(OverlayViews, RetryButtonHasItsFrameTitleFontAndColour) {
    int presses = 0;
    auto const view = retryConnectionButton([&presses] { ++presses; });
    EXPECT_TRUE((view.frame == Rect{20, 4, 140, 24}));
    EXPECT_EQ(view.autoresizing, Autoresizing::FlexibleRightMargin | Autoresizing::FlexibleTopMargin);
    auto const& button = std::get<ButtonContent>(view.content);
    EXPECT_EQ(button.title, "Retry connection");
    EXPECT_EQ(button.font.size, 10);
    EXPECT_EQ(button.font.weight, FontWeight::Semibold);
    EXPECT_TRUE((button.cellBackground == Color{0.12, 0.12, 0.11, 1.0}));
    button.action();
    EXPECT_EQ(presses, 1);
}

} // namespace

} // namespace test

} // namespace fcp
