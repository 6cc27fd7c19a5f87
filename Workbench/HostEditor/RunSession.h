#pragma once

#include "Workbench/HostEditor/ChannelListener.h"
#include "Workbench/HostEditor/Options.h"
#include "Workbench/HostEditor/Recording.h"
#include "Workbench/HostEditor/Replay.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

class Editor;
class Journal;
class SessionBus;

// What the options make of a run: one that is written down, one that is played back, or neither. Main thread.
class RunSession final {
public:
    // Editor, bus and journal outlive the session. `whenEnded` is for a replay.
    RunSession(Editor& shownEditor, SessionBus& sessionBus, Journal const& toTell, Replay::Ended whenEnded);

    // Before anything is opened. False when the run cannot be what is asked for; the journal tells why.
    [[nodiscard]] bool begin(Options const& options);

    [[nodiscard]] bool isReplay() const { return replay != nullptr; }

    // Those that were open in what is played back.
    [[nodiscard]] std::vector<std::string> const& recordedFiles() const { return files; }

    [[nodiscard]] SessionDesk desk() const;

private:
    bool beginRecording(std::string const& file);
    bool beginReplay(std::string const& file);

    Editor& editor;
    SessionBus& bus;
    Journal const& journal;
    Replay::Ended ended;
    std::vector<std::string> files;
    std::unique_ptr<Recording> recording;
    std::optional<ChannelListener> listener;
    std::unique_ptr<Replay> replay;
};

} // namespace workbench
