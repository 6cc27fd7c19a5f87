#include "Workbench/HostEditor/EveryFrame.h"
#include "Workbench/HostEditor/EveryLabel.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

TEST(Timecode, LabelsEveryFrameOfADayAtAllRates) {
    for (auto const rate : allRates)
        expectEveryLabelRight(rate, 24);
}

} // namespace
} // namespace workbench
