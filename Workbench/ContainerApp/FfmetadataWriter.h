#pragma once

#include "Workbench/ContainerApp/Chapter.h"
#include "Workbench/ContainerApp/CommentWriter.h"

#include <vector>

namespace workbench {

// Writes chapters as the metadata file of FFmpeg, in frames: TIMEBASE is the duration of one.
class FfmetadataWriter final : public CommentWriter {
public:
    explicit FfmetadataWriter(Timeline const& timeline);

    void write(TextSink const& sink) const override;

private:
    FrameRate rate;
    std::vector<Chapter> chapters;
};

} // namespace workbench
