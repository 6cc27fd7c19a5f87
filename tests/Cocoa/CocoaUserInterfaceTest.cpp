#include "Cocoa/PrincipalFixture.h"

#include "FcpExtension/OverlayViews.h"

#include <ostream>
#include <tuple>

namespace fcp::test {

namespace {

std::tuple<double, double, double, double> parts(Rect const& rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}

std::tuple<double, double, double, double> parts(Color const& color) {
    return {color.red, color.green, color.blue, color.alpha};
}

// The views of an opened panel, in the order in which they were put there.
class CocoaUserInterfaceTest : public PrincipalFixture {
protected:
    CocoaUserInterfaceTest() { open(); }

    [[nodiscard]] NativeLook container() const { return panel->look(); }

    [[nodiscard]] NativeLook loadingOverlay() const { return container().subviews.at(1); }

    [[nodiscard]] NativeLook errorOverlay() const { return container().subviews.at(2); }

    static void expectAsDescribed(NativeLook const& look, ViewDescription const& description) {
        EXPECT_EQ(parts(look.frame), parts(description.frame)) << look.text;
        EXPECT_EQ(look.mask, static_cast<unsigned>(description.autoresizing)) << look.text;
        EXPECT_EQ(look.isHidden, description.hidden) << look.text;
        EXPECT_EQ(look.accessibleName, description.accessibleName) << look.text;
        ASSERT_EQ(look.layer.has_value(), description.layerBackground.has_value()) << look.text;
        if (look.layer) {
            EXPECT_EQ(parts(*look.layer), parts(*description.layerBackground));
        }
    }

    Rect const bounds{0, 0, 400, 700};
};

TEST_F(CocoaUserInterfaceTest, PutsTheOverlaysAboveTheWebViewInTheContainer) {
    expectAsDescribed(container(), containerView());
    ASSERT_EQ(container().subviews.size(), 3U);
    EXPECT_EQ(container().subviews[0].kind, "WKWebView");
    EXPECT_EQ(parts(container().subviews[0].frame), parts(bounds));
    EXPECT_EQ(container().subviews[0].mask, 2U | 16U);
    expectAsDescribed(loadingOverlay(), loadingOverlayView(bounds));
    expectAsDescribed(errorOverlay(), errorOverlayView(bounds));
}

TEST_F(CocoaUserInterfaceTest, BuildsTheLoadingOverlayAsDescribed) {
    auto const views = loadingOverlay().subviews;
    ASSERT_EQ(views.size(), 2U);
    EXPECT_TRUE(views[0].isSpinner);
    expectAsDescribed(views[0], loadingSpinner());
    EXPECT_EQ(views[1].text, "Opening your review workspace\u2026");
    expectAsDescribed(views[1], loadingStatusLabel(bounds));
}

TEST_F(CocoaUserInterfaceTest, BuildsTheErrorOverlayAsDescribed) {
    auto const views = errorOverlay().subviews;
    ASSERT_EQ(views.size(), 5U);
    expectAsDescribed(views[0], accentBar(bounds));
    expectAsDescribed(views[1], offlineLabel(bounds));
    expectAsDescribed(views[2], connectionPausedLabel(bounds));
    expectAsDescribed(views[3], errorDetailText(bounds));
    expectAsDescribed(views[4], retryConnectionButton({}));
    EXPECT_EQ(views[1].text, "ZELVIX / OFFLINE");
    EXPECT_EQ(views[2].text, "Connection paused");
    EXPECT_EQ(views[3].text, "Check your connection and try again.");
    EXPECT_EQ(views[4].text, "Retry connection");
}

TEST_F(CocoaUserInterfaceTest, MakesLabelsThatCanOnlyBeRead) {
    for (auto const& label : {loadingOverlay().subviews.at(1), errorOverlay().subviews.at(1),
                              errorOverlay().subviews.at(2), errorOverlay().subviews.at(3)}) {
        ASSERT_TRUE(label.label) << label.kind;
        EXPECT_FALSE(label.label->isBordered) << label.text;
        EXPECT_FALSE(label.label->isBezeled) << label.text;
        EXPECT_FALSE(label.label->isEditable) << label.text;
        EXPECT_FALSE(label.label->isSelectable) << label.text;
        EXPECT_FALSE(label.label->drawsBackground) << label.text;
    }
}

TEST_F(CocoaUserInterfaceTest, SetsTextsInTheirFontsAndColors) {
    auto const views = errorOverlay().subviews;
    EXPECT_EQ(parts(views.at(1).label->color), parts(Color{0.88, 0.4, 0.32, 1}));
    EXPECT_EQ(parts(views.at(2).label->color), parts(Color{0.94, 0.93, 0.89, 1}));
    EXPECT_EQ(parts(views.at(3).label->color), parts(Color{0.6, 0.59, 0.55, 1}));
    EXPECT_EQ(views.at(1).label->fontSize, 9);
    EXPECT_EQ(views.at(2).label->fontSize, 14);
    EXPECT_EQ(views.at(3).label->fontSize, 10);
    EXPECT_TRUE(views.at(1).label->isBold);
    EXPECT_TRUE(views.at(2).label->isBold); // semibold has no face of its own here
    EXPECT_FALSE(views.at(3).label->isBold);
}

TEST_F(CocoaUserInterfaceTest, WrapsOnlyTheDetailTextByWordsToThreeLines) {
    auto const views = errorOverlay().subviews;
    for (auto const* const label : {&views.at(1), &views.at(2)}) {
        EXPECT_FALSE(label->label->wrapsByWords) << label->text;
        EXPECT_EQ(label->label->lines, 1) << label->text;
    }
    EXPECT_TRUE(views.at(3).label->wrapsByWords);
    EXPECT_EQ(views.at(3).label->lines, 3);
}

TEST_F(CocoaUserInterfaceTest, MakesARoundedBorderedButtonThatSendsItsMessageToTheController) {
    auto const button = errorOverlay().subviews.at(4).button;
    ASSERT_TRUE(button);
    EXPECT_TRUE(button->isRounded);
    EXPECT_TRUE(button->isBordered);
    EXPECT_EQ(button->message, "retryConnection");
    EXPECT_EQ(button->fontSize, 10);
    EXPECT_EQ(parts(button->cellBackground), parts(Color{0.12, 0.12, 0.11, 1}));
    EXPECT_TRUE(panel->buttonHasTarget());
}

TEST_F(CocoaUserInterfaceTest, GroupsAndNamesTheOverlays) {
    EXPECT_EQ(loadingOverlay().accessibleRole, errorOverlay().accessibleRole);
    EXPECT_FALSE(errorOverlay().accessibleRole.empty());
    EXPECT_EQ(container().accessibleName, "");
}

TEST_F(CocoaUserInterfaceTest, MakesAViewHiddenOnlyWhenItIsDescribedSo) {
    EXPECT_TRUE(lookOfNewView(errorOverlayView(bounds)).isHidden);
    EXPECT_FALSE(lookOfNewView(loadingOverlayView(bounds)).isHidden);
}

TEST_F(CocoaUserInterfaceTest, FollowsTheWindowsSize) {
    panel->show(800, 500);
    EXPECT_EQ(parts(container().subviews.at(0).frame), parts(Rect{0, 0, 800, 500}));
    EXPECT_EQ(parts(loadingOverlay().frame), parts(Rect{0, 0, 800, 500}));
    EXPECT_EQ(parts(loadingOverlay().subviews.at(1).frame), parts(Rect{42, 30, 350, 16}));
    EXPECT_EQ(parts(errorOverlay().subviews.at(3).frame), parts(Rect{20, 28, 372, 14}));
    EXPECT_EQ(parts(errorOverlay().subviews.at(4).frame), parts(Rect{20, 4, 140, 24}));
}

} // namespace

} // namespace fcp::test
