#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace workbench {

struct MarkerColour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(MarkerColour const&, MarkerColour const&) = default;
};

// A colour that a format has a name or a number for.
struct NamedColour {
    std::string_view name;
    MarkerColour colour;
};

// "#rgb", "#rrggbb" and "#rrggbbaa", which are what pages write, and the basic names, in any case. None for
// all else.
[[nodiscard]] std::optional<MarkerColour> readColour(std::string_view text);

// "#rrggbb".
[[nodiscard]] std::string hexText(MarkerColour colour);

// The place in `palette`, which is not empty, of what looks most alike.
[[nodiscard]] std::size_t nearest(MarkerColour colour, std::span<NamedColour const> palette);

} // namespace workbench
