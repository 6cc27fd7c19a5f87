#pragma once

#include "Workbench/HostEditor/Pin.h"
#include "Workbench/HostEditor/SequenceFacts.h"
#include "Workbench/HostEditor/TimelineScale.h"

#include <gtkmm/adjustment.h>
#include <gtkmm/scrollbar.h>
#include <gtkmm/widget.h>
#include <sigc++/sigc++.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

class PinButton;
class PlayheadLine;
class TimelineGround;

// The active sequence on one line, whole or magnified: a ruler, the pins of its comments, its clip, and the
// playhead above them. A press or a drag asks for the frame below it, a pin for the frame that it marks; the
// wheel scrolls, and magnifies with Control. From left to right the time axis leaves Margin free on both
// sides.
class TimelineView final : public Gtk::Widget {
public:
    static constexpr int Margin = 12;

    TimelineView();
    ~TimelineView() override;

    void showSequence(SequenceFacts const* shown); // null: there is none
    void showFrame(std::int64_t shown); // and keeps it in sight
    void showPins(std::vector<Pin> shown, bool areLive);

    // Around the playhead where it is in sight, else around the middle.
    void magnify(double factor);
    void showAll();
    void scrollPages(double pages);

    // 1 shows all.
    void setMagnification(double times);

    [[nodiscard]] double magnification() const { return scale.magnification(); }

    // Asks for the frame of the next pin in this direction, seen from `from`; for nothing without one.
    void seekPin(Direction direction, std::int64_t from);

    sigc::signal<void(std::int64_t)>& signalSeek() { return wanted; }

protected:
    void snapshot_vfunc(Glib::RefPtr<Gtk::Snapshot> const& snapshot) override;
    void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                       int& minimumBaseline, int& naturalBaseline) const override;
    void size_allocate_vfunc(int width, int height, int baseline) override;

private:
    void listenToPointer();
    void listenForTooltips();
    void rebuildPins();
    void regroupLater();
    void listenToWheel();
    bool turnWheel(double dx, double dy, bool magnifies);
    void rescale();
    void showScale();
    void showPlayhead();
    void placePins();

    [[nodiscard]] TimeAxis axis() const { return scale.axis(Margin); }

    [[nodiscard]] std::string marksNear(double position) const;

    std::optional<SequenceFacts> sequence;
    std::int64_t frame = 0;
    std::vector<Pin> pins;
    bool pinsAreLive = false;
    bool isDragging = false; // the playhead, not a pin
    TimelineScale scale;
    double pointer = 0; // from the left, as it was seen last
    int width = 0;
    std::unique_ptr<TimelineGround> ground;
    std::vector<std::unique_ptr<PinButton>> buttons; // one for each group
    std::unique_ptr<PlayheadLine> playhead;
    Glib::RefPtr<Gtk::Adjustment> stretch;
    Gtk::Scrollbar bar;
    sigc::connection regrouping;
    sigc::signal<void(std::int64_t)> wanted;
};

} // namespace workbench
