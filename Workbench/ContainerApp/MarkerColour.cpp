#include "Workbench/ContainerApp/MarkerColour.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace workbench {

namespace {

constexpr std::array basicColours{
    NamedColour{"black", {0, 0, 0}},       NamedColour{"silver", {192, 192, 192}},
    NamedColour{"gray", {128, 128, 128}},  NamedColour{"grey", {128, 128, 128}},
    NamedColour{"white", {255, 255, 255}}, NamedColour{"maroon", {128, 0, 0}},
    NamedColour{"red", {255, 0, 0}},       NamedColour{"purple", {128, 0, 128}},
    NamedColour{"fuchsia", {255, 0, 255}}, NamedColour{"magenta", {255, 0, 255}},
    NamedColour{"pink", {255, 192, 203}},  NamedColour{"green", {0, 128, 0}},
    NamedColour{"lime", {0, 255, 0}},      NamedColour{"olive", {128, 128, 0}},
    NamedColour{"yellow", {255, 255, 0}},  NamedColour{"orange", {255, 165, 0}},
    NamedColour{"navy", {0, 0, 128}},      NamedColour{"blue", {0, 0, 255}},
    NamedColour{"teal", {0, 128, 128}},    NamedColour{"aqua", {0, 255, 255}},
    NamedColour{"cyan", {0, 255, 255}},
};

std::optional<MarkerColour> readDigits(std::string_view digits) {
    if (!std::ranges::all_of(digits, [](char digit) { return g_ascii_isxdigit(digit); }))
        return {};
    auto const value = [digits](std::size_t place) {
        return static_cast<unsigned>(g_ascii_xdigit_value(digits[place]));
    };
    auto const one = [&](std::size_t place) { return static_cast<std::uint8_t>(17 * value(place)); };
    auto const two = [&](std::size_t place) {
        return static_cast<std::uint8_t>(16 * value(place) + value(place + 1));
    };
    if (digits.size() == 3)
        return MarkerColour{one(0), one(1), one(2)};
    if (digits.size() == 6 || digits.size() == 8)
        return MarkerColour{two(0), two(2), two(4)};
    return {};
}

int distance(MarkerColour a, MarkerColour b) {
    auto const red = a.red - b.red;
    auto const green = a.green - b.green;
    auto const blue = a.blue - b.blue;
    return red * red + green * green + blue * blue;
}

} // namespace

std::optional<MarkerColour> readColour(std::string_view text) {
    if (text.starts_with('#'))
        return readDigits(text.substr(1));
    auto const isSame = [](char one, char other) { return g_ascii_tolower(one) == g_ascii_tolower(other); };
    auto const* const found = std::ranges::find_if(
        basicColours, [&](NamedColour const& basic) { return std::ranges::equal(basic.name, text, isSame); });
    return found == basicColours.end() ? std::nullopt : std::optional{found->colour};
}

std::string hexText(MarkerColour colour) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", colour.red, colour.green, colour.blue);
    return text;
}

std::size_t nearest(MarkerColour colour, std::span<NamedColour const> palette) {
    auto const best = std::ranges::min_element(
        palette, {}, [colour](NamedColour const& each) { return distance(colour, each.colour); });
    return static_cast<std::size_t>(best - palette.begin());
}

} // namespace workbench
