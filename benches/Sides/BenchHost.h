#pragma once

#include "FcpExtension/ProExtensionHost.h"
#include "benches/Sides/Burst.h"

#include <memory>

namespace fcp::bench {

// The smallest editor there is: one sequence, which never changes. Asked to move its playhead, it plays a
// burst of frames instead, and notifies of each.
class BenchHost final : public FCPXHost {
public:
    BenchHost(int burstFrames, Burst::Thread burstThread);

    [[nodiscard]] std::shared_ptr<FCPXTimeline> timeline() const override;

private:
    class Timeline;

    std::shared_ptr<Timeline> const onlyTimeline;
};

} // namespace fcp::bench
