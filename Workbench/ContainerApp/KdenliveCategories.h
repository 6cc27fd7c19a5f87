#pragma once

#include "Workbench/ContainerApp/MarkerColour.h"

#include <array>

namespace workbench {

// The categories of guides that Kdenlive has unless a user changed them; the place of each is its number.
inline constexpr std::array kdenliveCategories{
    NamedColour{"purple", {0x9B, 0x59, 0xB6}},    NamedColour{"blue", {0x3D, 0xAE, 0xE9}},
    NamedColour{"turquoise", {0x1A, 0xBC, 0x9C}}, NamedColour{"green", {0x1C, 0xDC, 0x9A}},
    NamedColour{"yellow", {0xC9, 0xCE, 0x3B}},    NamedColour{"light orange", {0xFD, 0xBC, 0x4B}},
    NamedColour{"orange", {0xF3, 0x9C, 0x1F}},    NamedColour{"dark orange", {0xF4, 0x77, 0x50}},
    NamedColour{"red", {0xDA, 0x44, 0x53}},
};

} // namespace workbench
