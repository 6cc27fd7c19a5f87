#pragma once

#include "Workbench/HostEditor/TimeToFrame.h"

#include <array>

namespace workbench {

inline constexpr std::array<FrameRate, 12> allRates = {{{24000, 1001},
                                                        {24, 1},
                                                        {25, 1},
                                                        {30000, 1001},
                                                        {30, 1},
                                                        {48, 1},
                                                        {50, 1},
                                                        {60000, 1001},
                                                        {60, 1},
                                                        {120, 1},
                                                        {120000, 1001},
                                                        {240, 1}}};

// Fails the test unless each frame of so many hours is found from its time in seconds as a page would send it
// back: as a double, made a media time of 600 units in a second, rounded or cut off.
void expectEveryFrameFound(FrameRate rate, int hours);

} // namespace workbench
