#pragma once

#include "Workbench/ContainerApp/CommentWriter.h"
#include "Workbench/ContainerApp/Timeline.h"

namespace workbench {

// Writes FCPXML 1.10: one project with a gap as long as the sequence, which carries a to-do marker for each
// comment. All times are fractions on the grid of the frames. The size of the pictures is not known here: it
// is given as 1920x1080.
class FcpxmlWriter final : public CommentWriter {
public:
    explicit FcpxmlWriter(Timeline timeline);

    void write(TextSink const& sink) const override;

private:
    Timeline timeline;
};

} // namespace workbench
