#pragma once

#include "Workbench/HostEditor/TimeToFrame.h"

namespace workbench {

// Fails the test unless the frames of so many hours carry the labels that a counter of wheels would show, and
// each label leads back to its frame. The counter steps over the first labels of a minute where the rate
// asks for it: two at 30000/1001, four at 60000/1001.
void expectEveryLabelRight(FrameRate rate, int hours);

} // namespace workbench
