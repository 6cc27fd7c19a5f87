#pragma once

#include "Contract/NativeViews.h"

#include <array>
#include <vector>

namespace fcp::test {

using Pixel = std::array<int, 3>; // red, green, blue

// Equal up to rounding.
[[nodiscard]] bool isClose(Pixel const& a, Pixel const& b);

// What a widget in a shown window looks like, drawn anew by the window's own renderer.
class Picture {
public:
    explicit Picture(GtkWidget* widget);

    [[nodiscard]] Pixel at(int x, int y) const;

    // How many pixels inside `place` are not of the color.
    [[nodiscard]] int inked(Place const& place, Pixel const& background) const;

    // Whether any pixel inside `place` is of the color.
    [[nodiscard]] bool shows(Place const& place, Pixel const& color) const;

    void save(std::string const& file) const;

private:
    [[nodiscard]] int count(Place const& place, Pixel const& color) const;

    int const width;
    int const height;
    std::vector<guchar> bytes;
    GRef<GdkTexture> texture;
};

} // namespace fcp::test
