#pragma once

#include "Workbench/ContainerApp/CommentWriter.h"
#include "Workbench/ContainerApp/Timeline.h"

namespace workbench {

// Writes a project of Shotcut: a black clip as long as the sequence, with a marker on the timeline for each
// comment and each range. MLT opens it, too. The size of the pictures is not known here: it is given as
// 1920x1080.
class ShotcutWriter final : public CommentWriter {
public:
    explicit ShotcutWriter(Timeline timeline);

    void write(TextSink const& sink) const override;

private:
    Timeline timeline;
};

} // namespace workbench
