#include "Workbench/HostEditor/EveryFrame.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

TEST(TimeToFrame, FindsEveryFrameOfADayAtAllRates) {
    for (auto const rate : allRates)
        expectEveryFrameFound(rate, 24);
}

} // namespace
} // namespace workbench
