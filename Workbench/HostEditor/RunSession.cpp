#include "Workbench/HostEditor/RunSession.h"

#include "Workbench/HostEditor/Editor.h"
#include "Workbench/HostEditor/Journal.h"
#include "Workbench/ReviewPage/PageServer.h"

#include <utility>
#include <variant>

namespace workbench {

RunSession::RunSession(Editor& shownEditor, SessionBus& sessionBus, Journal const& toTell,
                       Replay::Ended whenEnded)
    : editor(shownEditor)
    , bus(sessionBus)
    , journal(toTell)
    , ended(std::move(whenEnded)) {}

bool RunSession::begin(Options const& options) {
    if (options.recordTo.empty() && options.replayFrom.empty())
        return true;
    if (!PageServer::servesWholePage()) {
        journal.warn(
            "this build serves the small page, which neither records nor plays back; ./run and ./test "
            "build the whole one where npm answers");
        return false;
    }
    return options.replayFrom.empty() ? beginRecording(options.recordTo) : beginReplay(options.replayFrom);
}

bool RunSession::beginRecording(std::string const& file) {
    auto begun = Recording::begin(file, [this](std::string const& line) { journal.warn(line); });
    if (auto const* const problem = std::get_if<std::string>(&begun)) {
        journal.warn(*problem);
        return false;
    }
    recording = std::get<std::unique_ptr<Recording>>(std::move(begun));
    listener.emplace(bus, [this](auto const& member, auto const& arguments) {
        recording->channelSaid(member, arguments);
    });
    editor.signalFilesChanged().connect([this] { recording->filesOpened(editor.openedFiles()); });
    editor.signalActiveChanged().connect([this] {
        auto const* const sequence = editor.activeSequence();
        recording->sequenceChanged(sequence ? std::optional{*sequence} : std::nullopt);
    });
    editor.signalPositionChanged().connect([this] { recording->playheadMoved(editor.position()); });
    journal.say("recording into " + file);
    return true;
}

bool RunSession::beginReplay(std::string const& file) {
    auto read = readRecording(file);
    if (auto const* const problem = std::get_if<std::string>(&read)) {
        journal.warn(*problem);
        return false;
    }
    auto& recorded = std::get<ReadRecording>(read);
    files = std::move(recorded.files);
    replay = std::make_unique<Replay>(editor, std::move(recorded.text), ended);
    journal.say("playing back " + file);
    return true;
}

SessionDesk RunSession::desk() const {
    if (replay)
        return replay.get();
    return recording ? SessionDesk{recording.get()} : SessionDesk{};
}

} // namespace workbench
