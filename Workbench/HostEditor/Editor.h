#pragma once

#include "Workbench/HostEditor/Player.h"
#include "Workbench/HostEditor/Sequence.h"
#include "Workbench/HostEditor/Shuttle.h"

#include <sigc++/sigc++.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

class Journal;

// The editor without its window: the sequences that are open, the one that is active, and its playhead. Main
// thread.
class Editor final {
public:
    explicit Editor(Journal const& toTell);
    Editor(Editor const&) = delete;
    Editor& operator=(Editor const&) = delete;

    // Opens what can be opened beside what is open already, and makes the first file's sequence active; a
    // file that is open is not opened again. What cannot be opened is told in problems().
    void open(std::vector<std::string> const& files);

    [[nodiscard]] std::vector<SequenceFacts> sequences() const;

    // One line for each file that could not be opened, or only in part.
    [[nodiscard]] std::vector<std::string> const& problems() const { return told; }

    // The paths of the files that were asked for and are open, in that order.
    [[nodiscard]] std::vector<std::string> const& openedFiles() const { return opened; }

    // None while nothing is open.
    [[nodiscard]] std::optional<std::size_t> activeIndex() const { return active; }

    [[nodiscard]] SequenceFacts const* activeSequence() const;

    void activate(std::size_t index);
    void deactivate();

    void togglePlaying();
    void shuttle(Direction direction); // faster with each call
    void pause();
    void seek(std::int64_t frame); // clamped
    void step(std::int64_t frames);
    void seekToEnd();

    void setPictureArea(PixelSize area) { player.setArea(area); }

    [[nodiscard]] bool isPlaying() const { return player.isPlaying(); }

    // 0 while it is paused, below 0 backwards.
    [[nodiscard]] double speed() const { return player.speed(); }

    // Frames that the engine has left out since the sequence became active.
    [[nodiscard]] int dropped() const { return player.dropped(); }

    // The frame on the screen, and the one that is going to be there.
    [[nodiscard]] std::int64_t position() const { return player.position(); }

    [[nodiscard]] std::int64_t target() const { return player.target(); }

    // Files were opened, or could not be.
    sigc::signal<void()>& signalFilesChanged() { return filesChanged; }

    sigc::signal<void()>& signalActiveChanged() { return activeChanged; }

    // Once for each new position on the screen, and once after each change of the active sequence.
    sigc::signal<void()>& signalPositionChanged() { return positionChanged; }

    sigc::signal<void()>& signalTargetChanged() { return player.signalTargetChanged(); }

    // It plays, pauses, or goes at another speed.
    sigc::signal<void()>& signalPlayingChanged() { return player.signalPlayingChanged(); }

    // Every picture, also a better one of the same position.
    sigc::signal<void(Picture const&)>& signalPicture() { return pictureReady; }

private:
    [[nodiscard]] std::optional<std::size_t> ensureOpen(std::string const& file);
    std::optional<std::size_t> openOne(std::string const& file);
    void tell(std::string const& problem);
    void show(ShownFrame const& frame);

    Journal const& journal;
    std::vector<std::unique_ptr<Sequence>> loaded;
    std::vector<std::string> opened;
    std::vector<std::string> told;
    std::optional<std::size_t> active;
    std::int64_t reported = 0; // the position that was told last
    sigc::signal<void()> filesChanged;
    sigc::signal<void()> activeChanged;
    sigc::signal<void()> positionChanged;
    sigc::signal<void(Picture const&)> pictureReady;
    Player player; // holds one of the sequences: goes first
};

} // namespace workbench
