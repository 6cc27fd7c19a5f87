#pragma once

#include "Workbench/ContainerApp/CommentWriter.h"
#include "Workbench/ContainerApp/Timeline.h"

namespace workbench {

// Writes a CMX3600 edit decision list: for each comment an event of one frame, a line with its marker and a
// locator, which are the two ways in which editors read markers from such lists. ASCII with CRLF.
class EdlWriter final : public CommentWriter {
public:
    explicit EdlWriter(Timeline timeline);

    void write(TextSink const& sink) const override;

private:
    Timeline timeline;
};

} // namespace workbench
