#include "Cocoa/Pictures/PictureFiles.h"
#include "FcpExtension/OverlayViews.h"

#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// Compares what the two platforms draw for the same panel. Each has its own fonts, spinner and buttons;
// everything else must be equal to the pixel.

namespace fcp::test {

namespace {

using Pixel = std::array<int, 3>; // red, green, blue

// In pixels, from the top-left corner.
struct Place {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    [[nodiscard]] bool holds(int x, int y) const { return x >= left && x < right && y >= top && y < bottom; }
};

bool isClose(Pixel const& a, Pixel const& b, int difference = 2) {
    return std::ranges::equal(a, b, [difference](int x, int y) { return std::abs(x - y) <= difference; });
}

Pixel pixelOf(Color const& color) {
    auto const component = [](double value) { return static_cast<int>(std::lround(value * 255)); };
    return {component(color.red), component(color.green), component(color.blue)};
}

class Picture {
public:
    explicit Picture(std::string const& file)
        : surface(cairo_image_surface_create_from_png(file.c_str())) {
        EXPECT_EQ(cairo_surface_status(surface), CAIRO_STATUS_SUCCESS) << file;
    }

    ~Picture() { cairo_surface_destroy(surface); }

    Picture(Picture const&) = delete;
    Picture& operator=(Picture const&) = delete;

    [[nodiscard]] int width() const { return cairo_image_surface_get_width(surface); }

    [[nodiscard]] int height() const { return cairo_image_surface_get_height(surface); }

    [[nodiscard]] Pixel at(int x, int y) const {
        std::ptrdiff_t const stride = cairo_image_surface_get_stride(surface);
        auto const* const row = cairo_image_surface_get_data(surface) + y * stride;
        auto const pixel = reinterpret_cast<std::uint32_t const*>(row)[x];
        return {static_cast<int>(pixel >> 16 & 0xFF), static_cast<int>(pixel >> 8 & 0xFF),
                static_cast<int>(pixel & 0xFF)};
    }

    // Around everything inside `place` that is not of the background's color.
    [[nodiscard]] std::optional<Place> ink(Place const& place, Pixel const& background) const {
        std::optional<Place> found;
        for (int y = place.top; y < place.bottom; ++y) {
            for (int x = place.left; x < place.right; ++x) {
                if (isClose(at(x, y), background, 24))
                    continue;
                auto& box = found ? *found : found.emplace(Place{x, y, x + 1, y + 1});
                box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
                       std::max(box.bottom, y + 1)};
            }
        }
        return found;
    }

    [[nodiscard]] bool shows(Place const& place, Pixel const& color) const {
        for (int y = place.top; y < place.bottom; ++y) {
            for (int x = place.left; x < place.right; ++x) {
                if (isClose(at(x, y), color, 12))
                    return true;
            }
        }
        return false;
    }

private:
    cairo_surface_t* const surface;
};

// One panel, drawn by both, in one state and size.
class PanelPictures : public testing::TestWithParam<std::pair<int, int>> {
protected:
    // Where a view of the panel's own size lies when the panel has been resized: these all keep to the
    // bottom.
    [[nodiscard]] Place placeOf(ViewDescription const& view) const {
        auto const bottom = height - static_cast<int>(view.frame.y);
        auto const left = static_cast<int>(view.frame.x);
        return {left, bottom - static_cast<int>(view.frame.height), left + static_cast<int>(view.frame.width),
                bottom};
    }

    static void expectEqualOutside(std::vector<Place> const& places, Picture const& gtk,
                                   Picture const& cocoa) {
        int different = 0;
        std::string first;
        for (int y = 0; y < gtk.height(); ++y) {
            for (int x = 0; x < gtk.width(); ++x) {
                if (std::ranges::any_of(places, [x, y](Place const& place) { return place.holds(x, y); }) ||
                    isClose(gtk.at(x, y), cocoa.at(x, y)))
                    continue;
                if (++different == 1)
                    first = std::to_string(x) + ", " + std::to_string(y);
            }
        }
        EXPECT_EQ(different, 0) << "pixels differ, the first one at " << first;
    }

    // The same text in two fonts: it begins at the same place, and lies on the same line.
    void expectSameText(ViewDescription const& view, Pixel const& background, Picture const& gtk,
                        Picture const& cocoa) const {
        auto const place = placeOf(view);
        auto const& label = std::get<LabelContent>(view.content);
        auto const ours = gtk.ink(place, background);
        auto const theirs = cocoa.ink(place, background);
        ASSERT_TRUE(ours && theirs) << label.text;
        EXPECT_NEAR(ours->left, theirs->left, 4) << label.text;
        EXPECT_NEAR(ours->top, theirs->top, 4) << label.text;
        EXPECT_NEAR(ours->bottom, theirs->bottom, 4) << label.text;
        EXPECT_NEAR(ours->right, theirs->right, (ours->right - ours->left) / 4.0) << label.text;
        EXPECT_TRUE(gtk.shows(place, pixelOf(label.color))) << label.text;
        EXPECT_TRUE(cocoa.shows(place, pixelOf(label.color))) << label.text;
    }

    int const width = GetParam().first;
    int const height = GetParam().second;
    Rect const bounds{0, 0, 400, 700}; // as the overlays were built
};

TEST_P(PanelPictures, TheLoadingOverlaysLookAlike) {
    Picture const gtk(pictureFile("gtk", "loading", GetParam()));
    Picture const cocoa(pictureFile("cocoa", "loading", GetParam()));
    ASSERT_EQ(std::pair(gtk.width(), gtk.height()), GetParam());
    ASSERT_EQ(std::pair(cocoa.width(), cocoa.height()), GetParam());
    auto const background = gtk.at(width / 2, height / 2);
    auto const spinner = placeOf(loadingSpinner());
    auto const status = loadingStatusLabel(bounds);
    expectEqualOutside({spinner, placeOf(status)}, gtk, cocoa);
    expectSameText(status, background, gtk, cocoa);
    EXPECT_TRUE(gtk.ink(spinner, background));
    EXPECT_TRUE(cocoa.ink(spinner, background));
}

TEST_P(PanelPictures, TheErrorOverlaysLookAlike) {
    Picture const gtk(pictureFile("gtk", "error", GetParam()));
    Picture const cocoa(pictureFile("cocoa", "error", GetParam()));
    ASSERT_EQ(std::pair(cocoa.width(), cocoa.height()), std::pair(gtk.width(), gtk.height()));
    auto const background = pixelOf(*errorOverlayView(bounds).layerBackground);
    auto const button = placeOf(retryConnectionButton({}));
    std::vector<Place> places{button};
    for (auto const& label : {offlineLabel(bounds), connectionPausedLabel(bounds), errorDetailText(bounds)}) {
        expectSameText(label, background, gtk, cocoa);
        places.push_back(placeOf(label));
    }
    // A change of height goes to the bar and to the margin above it. The system documents equal shares, which
    // the one platform takes; the library that stands in for the other goes by their sizes.
    if (height != static_cast<int>(bounds.height))
        places.push_back({8, 0, 11, 8});
    expectEqualOutside(places, gtk, cocoa);
    for (auto const* const picture : {&gtk, &cocoa}) {
        EXPECT_TRUE(isClose(picture->at(9, height / 2), pixelOf(*accentBar(bounds).layerBackground)));
        auto const drawn = picture->ink(button, background);
        ASSERT_TRUE(drawn);
        EXPECT_NEAR((drawn->left + drawn->right) / 2.0, (button.left + button.right) / 2.0, 4);
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, PanelPictures, testing::ValuesIn(pictureSizes));

} // namespace

} // namespace fcp::test
