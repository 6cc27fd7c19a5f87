#pragma once

#include "Workbench/ContainerApp/CommentWriter.h"
#include "Workbench/ContainerApp/Timeline.h"

namespace workbench {

// Writes guides as Kdenlive reads them: a JSON array of one guide for each frame with comments, whose
// position and duration count frames.
class KdenliveWriter final : public CommentWriter {
public:
    explicit KdenliveWriter(Timeline timeline);

    void write(TextSink const& sink) const override;

private:
    Timeline timeline;
};

} // namespace workbench
