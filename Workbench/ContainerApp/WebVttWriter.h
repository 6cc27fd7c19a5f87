#pragma once

#include "Workbench/ContainerApp/Chapter.h"
#include "Workbench/ContainerApp/CommentWriter.h"

#include <vector>

namespace workbench {

// Writes chapters as WebVTT: cues of plain text, each lasting until the next one at most. A cue begins with
// the first millisecond that lies in its frame.
class WebVttWriter final : public CommentWriter {
public:
    explicit WebVttWriter(Timeline const& timeline);

    void write(TextSink const& sink) const override;

private:
    FrameRate rate;
    std::vector<Chapter> chapters;
};

} // namespace workbench
