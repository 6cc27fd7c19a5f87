#include "Contract/NativeViews.h"
#include "Contract/TurnUntil.h"

#include <cstdlib>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace fcp::test {

namespace {

static_assert(!std::is_copy_constructible_v<GtkView> && !std::is_move_constructible_v<GtkView>);

class GtkViewTest : public NativeViews {
protected:
    void expectOriginalLoadingPlaces() const {
        EXPECT_EQ(placeOf(loadingOverlay), (Place{0, 0, 400, 700}));
        EXPECT_EQ(placeOfTurning(spinner), (Place{20, 654, 16, 16}));
        EXPECT_EQ(placeOf(status), (Place{42, 654, 350, 16}));
    }

    void expectOriginalErrorPlaces() const {
        EXPECT_EQ(placeOf(errorOverlay), (Place{0, 0, 400, 700}));
        EXPECT_EQ(placeOf(bar), (Place{8, 8, 3, 684}));
        EXPECT_EQ(placeOf(offline), (Place{20, 618, 372, 12}));
        EXPECT_EQ(placeOf(paused), (Place{20, 634, 372, 18}));
        EXPECT_EQ(placeOf(detail), (Place{20, 658, 372, 14}));
        EXPECT_EQ(placeOf(retry), (Place{20, 672, 140, 24}));
    }

    // Runs a command of the X server's test tool and turns the loop until `condition` holds.
    static bool drive(std::string const& command, std::function<bool()> const& condition) {
        EXPECT_EQ(std::system(("xdotool " + command).c_str()), 0);
        return turnUntil(condition);
    }
};

} // namespace

TEST_F(GtkViewTest, ThePanelWouldLikeTheSizeOfItsViewAndIsContentWithNone) {
    for (auto const& [orientation, wanted] :
         {std::pair{GTK_ORIENTATION_HORIZONTAL, 400}, std::pair{GTK_ORIENTATION_VERTICAL, 700}}) {
        int minimum = -1;
        int natural = -1;
        gtk_widget_measure(root, orientation, -1, &minimum, &natural, nullptr, nullptr);
        EXPECT_EQ(minimum, 0);
        EXPECT_EQ(natural, wanted);
    }
}

TEST_F(GtkViewTest, FramesAreTurnedUpsideDown) {
    errorOverlay->show();
    present();
    expectOriginalLoadingPlaces();
    expectOriginalErrorPlaces();
}

TEST_F(GtkViewTest, OverlaysFollowTheirMasksAndTheWayBackEndsExactlyWhereItBegan) {
    errorOverlay->show();
    present();
    present(800, 500);
    EXPECT_EQ(placeOf(loadingOverlay), (Place{0, 0, 800, 500}));
    EXPECT_EQ(placeOf(status), (Place{42, 454, 350, 16}));
    EXPECT_EQ(placeOf(bar), (Place{8, -92, 3, 584})); // shares the change with its top margin
    EXPECT_EQ(placeOf(detail), (Place{20, 458, 372, 14}));
    EXPECT_EQ(placeOf(retry), (Place{20, 472, 140, 24}));
    present(150, 90);
    EXPECT_EQ(placeOf(errorOverlay), (Place{0, 0, 150, 90}));
    EXPECT_EQ(placeOfTurning(spinner), (Place{20, 44, 16, 16}));
    EXPECT_EQ(placeOf(bar), (Place{8, -297, 3, 379}));
    EXPECT_EQ(placeOf(retry), (Place{20, 62, 140, 24}));
    present(400, 700);
    expectOriginalLoadingPlaces();
    expectOriginalErrorPlaces();
}

TEST_F(GtkViewTest, HiddenViewsFollowAsWell) {
    present();
    present(800, 500);
    EXPECT_EQ(errorOverlay->bounds().width, 800);
    EXPECT_EQ(errorOverlay->bounds().height, 500);
    EXPECT_EQ(bar->bounds().height, 584);
    showError();
    ASSERT_TRUE(turnUntil([&] { return placeOf(errorOverlay) == Place{0, 0, 800, 500}; }));
    EXPECT_EQ(placeOf(retry), (Place{20, 472, 140, 24}));
    present(400, 700);
    expectOriginalErrorPlaces();
}

TEST_F(GtkViewTest, BoundsAreTheSizeAtTheOriginWhateverTheFrame) {
    auto const own = spinner->bounds();
    EXPECT_EQ(own.x, 0);
    EXPECT_EQ(own.y, 0);
    EXPECT_EQ(own.width, 16);
    EXPECT_EQ(own.height, 16);
}

TEST_F(GtkViewTest, AWindowMayBeSmallerThanAnythingInIt) {
    errorOverlay->show();
    present(10, 10);
    EXPECT_EQ(placeOf(retry), (Place{20, -18, 140, 24}));
}

TEST_F(GtkViewTest, AOneLineTextEndsInAnEllipsisAndNeverWraps) {
    status->setText(longMessage);
    present();
    auto* const label = labelOf(status);
    EXPECT_EQ(pango_layout_get_line_count(gtk_label_get_layout(label)), 1);
    EXPECT_TRUE(pango_layout_is_ellipsized(gtk_label_get_layout(label)));
}

TEST_F(GtkViewTest, TextIsNeitherMarkupNorMnemonic) {
    detail->setText("<b>a</b> & _b");
    auto* const label = labelOf(detail);
    EXPECT_STREQ(gtk_label_get_label(label), "<b>a</b> & _b");
    EXPECT_STREQ(gtk_label_get_text(label), "<b>a</b> & _b");
}

TEST_F(GtkViewTest, OnlyLabelsTakeAText) {
    retry->setText("Other");
    spinner->setText("Other");
    loadingOverlay->setText("Other");
    EXPECT_STREQ(gtk_button_get_label(GTK_BUTTON(widgetOf(retry))), "Retry connection");
}

TEST_F(GtkViewTest, ShowAndHideAreOfTheViewAlone) {
    present();
    EXPECT_TRUE(gtk_widget_get_mapped(widgetOf(loadingOverlay)));
    EXPECT_FALSE(gtk_widget_get_visible(widgetOf(errorOverlay)));
    EXPECT_FALSE(gtk_widget_get_mapped(widgetOf(retry)));
    showError();
    EXPECT_FALSE(gtk_widget_get_mapped(widgetOf(status)));
    EXPECT_TRUE(gtk_widget_get_visible(widgetOf(status)));
    EXPECT_TRUE(turnUntil([&] { return gtk_widget_get_mapped(widgetOf(retry)); }));
}

TEST_F(GtkViewTest, SubviewsLieAboveEarlierOnesInTheirOrder) {
    std::vector<GtkWidget*> children;
    for (auto* child = gtk_widget_get_first_child(widgetOf(container)); child;
         child = gtk_widget_get_next_sibling(child))
        children.push_back(child);
    ASSERT_EQ(children.size(), 3U);
    EXPECT_EQ(children[1], widgetOf(loadingOverlay));
    EXPECT_EQ(children[2], widgetOf(errorOverlay));
}

TEST_F(GtkViewTest, TheButtonTakesTheKeyboardInAWindowAndNullGivesItUp) {
    present();
    showError();
    EXPECT_TRUE(container->isInWindow());
    container->makeFirstResponder(retry.get());
    EXPECT_EQ(gtk_window_get_focus(GTK_WINDOW(window)), widgetOf(retry));
    EXPECT_TRUE(turnUntil([&] { return gtk_widget_has_focus(widgetOf(retry)); }));
    container->makeFirstResponder(nullptr);
    EXPECT_EQ(gtk_window_get_focus(GTK_WINDOW(window)), nullptr);
}

TEST_F(GtkViewTest, OutsideOfAWindowNothingTakesTheKeyboard) {
    gtk_window_set_child(GTK_WINDOW(window), nullptr);
    showError();
    EXPECT_FALSE(container->isInWindow());
    EXPECT_FALSE(retry->isInWindow());
    container->makeFirstResponder(retry.get());
    container->makeFirstResponder(nullptr);
    EXPECT_FALSE(gtk_widget_is_focus(widgetOf(retry)));
    gtk_window_set_child(GTK_WINDOW(window), root);
    EXPECT_TRUE(retry->isInWindow());
    EXPECT_EQ(gtk_window_get_focus(GTK_WINDOW(window)), nullptr);
}

TEST_F(GtkViewTest, AClickAndTheReturnKeyPressTheButton) {
    showError();
    present();
    container->makeFirstResponder(retry.get());
    ASSERT_TRUE(turnUntil([&] { return gtk_widget_has_focus(widgetOf(retry)); }));
    EXPECT_TRUE(drive("key Return", [&] { return pressed == 1; }));
    EXPECT_TRUE(drive("mousemove 60 685 click 1", [&] { return pressed == 2; }));
    EXPECT_TRUE(drive("mousemove 300 300 click 1 mousemove 60 685 click 1", [&] { return pressed == 3; }));
}

TEST_F(GtkViewTest, AnActionMayTakeItsOwnButtonAway) {
    auto superview = userInterface.makeView(loadingOverlayView(bounds));
    superview->addSubview(
        userInterface.makeView(retryConnectionButton([this, &superview, token = std::make_shared<int>(1)] {
            superview.reset();
            pressed += *token; // the action is still there
        })));
    auto const button = GRef<GtkWidget>::retain(gtk_widget_get_first_child(widgetOf(superview)));
    g_signal_emit_by_name(button.get(), "clicked");
    EXPECT_EQ(pressed, 1);
    EXPECT_EQ(gtk_widget_get_parent(button.get()), nullptr);
}

TEST_F(GtkViewTest, AViewThatGoesLetsItsSubviewsGo) {
    auto superview = userInterface.makeView(loadingOverlayView(bounds));
    auto const subview = userInterface.makeView(loadingSpinner());
    superview->addSubview(subview);
    auto const widget = GRef<GtkWidget>::retain(widgetOf(superview));
    superview.reset();
    EXPECT_EQ(gtk_widget_get_parent(widgetOf(subview)), nullptr);
    EXPECT_EQ(gtk_widget_get_first_child(widget.get()), nullptr);
}

} // namespace fcp::test
