#pragma once

#include "Workbench/HostEditor/Pin.h"
#include "Workbench/HostEditor/SequenceFacts.h"
#include "Workbench/HostEditor/TimeAxis.h"

#include <gtkmm/drawingarea.h>

#include <optional>
#include <vector>

namespace workbench {

// What lies still on the timeline: the ruler with the project's own marks, the ranges of comments, the clip.
class TimelineGround final : public Gtk::DrawingArea {
public:
    static constexpr int RulerHeight = 22;
    static constexpr int PinsTop = RulerHeight + 2;
    static constexpr int PinsHeight = 16;
    static constexpr int ClipTop = PinsTop + PinsHeight + 4;
    static constexpr int ClipHeight = 40;
    static constexpr int Height = ClipTop + ClipHeight + 8;

    TimelineGround();

    void showSequence(SequenceFacts const* shown); // null: there is none
    void setAxis(TimeAxis const& newAxis);
    void showPins(std::vector<Pin> shown, bool areLive);

private:
    using Context = Cairo::RefPtr<Cairo::Context>;

    void draw(Context const& context);
    void drawRuler(Context const& context);
    void drawMarks(Context const& context) const;
    void drawRanges(Context const& context) const;
    void drawClip(Context const& context);

    std::optional<SequenceFacts> sequence;
    TimeAxis axis;
    std::vector<Pin> pins;
    bool pinsAreLive = false;
};

} // namespace workbench
