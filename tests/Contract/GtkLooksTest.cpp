#include "Contract/Picture.h"

#include <string>
#include <utility>

namespace fcp::test {

namespace {

constexpr Pixel panelColor{23, 23, 20};
constexpr Pixel translucentOverWhite{41, 41, 39};

using GtkLooksTest = NativeViews;

} // namespace

TEST_F(GtkLooksTest, TheLoadingOverlayTintsThePageAndTheErrorOverlayCoversIt) {
    present();
    Picture const loading(root);
    EXPECT_PRED2(isClose, loading.at(200, 100), translucentOverWhite);
    EXPECT_PRED2(isClose, loading.at(399, 699), translucentOverWhite);
    showError();
    Picture const error(root);
    EXPECT_PRED2(isClose, error.at(200, 100), panelColor);
    EXPECT_PRED2(isClose, error.at(9, 300), (Pixel{224, 102, 82}));
    EXPECT_PRED2(isClose, error.at(8, 8), (Pixel{224, 102, 82}));
    EXPECT_PRED2(isClose, error.at(10, 691), (Pixel{224, 102, 82}));
    EXPECT_PRED2(isClose, error.at(11, 300), panelColor);
    EXPECT_PRED2(isClose, error.at(8, 692), panelColor);
    EXPECT_PRED2(isClose, error.at(30, 676), (Pixel{31, 31, 28}));
    errorOverlay->hide();
    EXPECT_PRED2(isClose, Picture(root).at(200, 100), (Pixel{255, 255, 255}));
}

TEST_F(GtkLooksTest, TheContainerHasTheOverlaysColor) {
    present();
    loadingOverlay->hide();
    gtk_widget_set_visible(gtk_widget_get_first_child(widgetOf(container)), FALSE); // the page
    EXPECT_PRED2(isClose, Picture(root).at(200, 100), panelColor);
}

TEST_F(GtkLooksTest, TextsAndSpinnerHaveInkInTheirFramesAndNoneBeside) {
    present();
    Picture const loading(root);
    EXPECT_GT(loading.inked(placeOfTurning(spinner), translucentOverWhite), 20);
    EXPECT_GT(loading.inked(placeOf(status), translucentOverWhite), 100);
    EXPECT_EQ(loading.inked({0, 0, 400, 650}, translucentOverWhite), 0);
    EXPECT_EQ(loading.inked({0, 674, 400, 26}, translucentOverWhite), 0);
    showError();
    Picture const error(root);
    for (auto const& view : {offline, paused, detail})
        EXPECT_GT(error.inked(placeOf(view), panelColor), 100);
    EXPECT_EQ(error.inked({11, 0, 389, 616}, panelColor), 0);
}

TEST_F(GtkLooksTest, TextHasTheColorOfItsDescription) {
    showError();
    present();
    Picture const error(root);
    EXPECT_TRUE(error.shows(placeOf(offline), {224, 102, 82}));
    EXPECT_TRUE(error.shows(placeOf(paused), {240, 237, 227}));
    EXPECT_TRUE(error.shows(placeOf(detail), {153, 150, 140}));
}

TEST_F(GtkLooksTest, FontsHaveTheirSizeInPixelsAndTheirWeight) {
    auto const fontOf = [](std::shared_ptr<View> const& view) {
        auto* const label = gtk_widget_get_first_child(widgetOf(view));
        auto const* const font = pango_context_get_font_description(gtk_widget_get_pango_context(label));
        EXPECT_TRUE(pango_font_description_get_size_is_absolute(font));
        return std::pair{pango_font_description_get_size(font) / PANGO_SCALE,
                         static_cast<int>(pango_font_description_get_weight(font))};
    };
    showError();
    present();
    EXPECT_EQ(fontOf(status), std::pair(10, 400));
    EXPECT_EQ(fontOf(offline), std::pair(9, 700));
    EXPECT_EQ(fontOf(paused), std::pair(14, 600));
    EXPECT_EQ(fontOf(detail), std::pair(10, 400));
    EXPECT_EQ(fontOf(retry), std::pair(10, 600));
}

TEST_F(GtkLooksTest, ALongDetailTextWrapsByWordsToThreeLinesAndStaysInsideItsFrame) {
    showError();
    detail->setText(longMessage);
    present();
    auto* const label = labelOf(detail);
    EXPECT_STREQ(gtk_label_get_text(label), longMessage);
    EXPECT_EQ(pango_layout_get_line_count(gtk_label_get_layout(label)), 3);
    EXPECT_TRUE(pango_layout_is_ellipsized(gtk_label_get_layout(label)));
    EXPECT_EQ(placeOf(detail), (Place{20, 658, 372, 14}));
    auto const inner = placeOf(GTK_WIDGET(label));
    EXPECT_EQ((Place{inner.x, inner.y, inner.width, 0}), (Place{0, 0, 372, 0}));
    EXPECT_GT(inner.height, 28);
    Picture const error(root);
    EXPECT_GT(error.inked({20, 658, 372, 14}, panelColor), 300);
    EXPECT_EQ(error.inked({165, 672, 235, 28}, panelColor), 0); // the lines below, beside the button
}

TEST_F(GtkLooksTest, TheFocusedButtonHasARingInsideItsFrame) {
    showError();
    present();
    container->makeFirstResponder(nullptr); // a window may have given it the keyboard of its own accord
    Picture const plain(root);
    container->makeFirstResponder(retry.get());
    Picture const focused(root);
    EXPECT_FALSE(isClose(plain.at(90, 672), focused.at(90, 672)));
    EXPECT_PRED2(isClose, focused.at(90, 673), (Pixel{74, 144, 217}));
    EXPECT_EQ(focused.inked({11, 696, 389, 4}, panelColor), 0);
}

TEST_F(GtkLooksTest, OverlaysAndSpinnerAreNamedAndTheErrorOverlayIsAnnounced) {
    auto const nameOf = [](std::shared_ptr<View> const& view, char const* name) {
        auto const wrong = GCharPtr(gtk_test_accessible_check_property(
            GTK_ACCESSIBLE(widgetOf(view)), GTK_ACCESSIBLE_PROPERTY_LABEL, name, nullptr));
        return wrong ? std::string(wrong.get()) : std::string(name);
    };
    auto const roleOf = [](GtkWidget* widget) {
        return gtk_accessible_get_accessible_role(GTK_ACCESSIBLE(widget));
    };
    EXPECT_EQ(nameOf(loadingOverlay, "Loading"), "Loading");
    EXPECT_EQ(nameOf(spinner, "Loading"), "Loading");
    EXPECT_EQ(nameOf(errorOverlay, "Connection error"), "Connection error");
    EXPECT_EQ(roleOf(widgetOf(errorOverlay)), GTK_ACCESSIBLE_ROLE_ALERT);
    EXPECT_EQ(roleOf(widgetOf(loadingOverlay)), GTK_ACCESSIBLE_ROLE_GROUP);
    EXPECT_EQ(roleOf(gtk_widget_get_first_child(widgetOf(detail))), GTK_ACCESSIBLE_ROLE_LABEL);
    EXPECT_EQ(roleOf(widgetOf(retry)), GTK_ACCESSIBLE_ROLE_BUTTON);
    EXPECT_EQ(roleOf(widgetOf(spinner)), GTK_ACCESSIBLE_ROLE_PROGRESS_BAR);
}

TEST_F(GtkLooksTest, TheSpinnerTurns) {
    EXPECT_TRUE(gtk_spinner_get_spinning(GTK_SPINNER(widgetOf(spinner))));
}

} // namespace fcp::test
