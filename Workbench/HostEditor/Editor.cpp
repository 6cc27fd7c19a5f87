#include "Workbench/HostEditor/Editor.h"

#include "Workbench/HostEditor/Journal.h"
#include "Workbench/HostEditor/MediaFile.h"

#include <glibmm/convert.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

namespace workbench {

namespace {

std::string describe(SequenceFacts const& facts, Stopwatch const& watch) {
    return "opened " + facts.name + ": " + std::to_string(facts.length) + " frames at " +
           std::to_string(facts.rate.numerator) + "/" + std::to_string(facts.rate.denominator) + " in " +
           watch.text();
}

} // namespace

Editor::Editor(Journal const& toTell)
    : journal(toTell) {
    player.signalShown().connect([this](ShownFrame const& frame) { show(frame); });
}

void Editor::open(std::vector<std::string> const& files) {
    std::optional<std::size_t> first;
    for (auto const& file : files) {
        auto const index = ensureOpen(file);
        if (!first)
            first = index;
    }
    if (first)
        activate(*first);
    filesChanged.emit();
}

// Answers which of the file's sequences is to be active.
std::optional<std::size_t> Editor::ensureOpen(std::string const& file) {
    auto const path = std::filesystem::absolute(file).lexically_normal().string();
    std::string const uri = Glib::filename_to_uri(path);
    auto const known =
        std::ranges::find(loaded, uri, [](auto const& sequence) { return sequence->facts().uri; });
    auto const index = known == loaded.end()
                           ? openOne(file)
                           : std::optional{static_cast<std::size_t>(known - loaded.begin())};
    if (index)
        opened.push_back(path);
    return index;
}

std::optional<std::size_t> Editor::openOne(std::string const& file) {
    Stopwatch const watch;
    auto result = openMediaFile(file);
    if (auto const* const reason = std::get_if<std::string>(&result)) {
        tell("cannot open " + file + ": " + *reason);
        return {};
    }
    auto& found = std::get<OpenedFile>(result);
    for (auto const& note : found.notes)
        tell(std::string{file}.append(": ").append(note));
    for (auto const& sequence : found.sequences)
        journal.say(describe(sequence->facts(), watch));
    auto const before = loaded.size();
    std::ranges::move(found.sequences, std::back_inserter(loaded));
    return before + found.active;
}

void Editor::tell(std::string const& problem) {
    journal.warn(problem);
    told.push_back(problem);
}

std::vector<SequenceFacts> Editor::sequences() const {
    std::vector<SequenceFacts> facts;
    std::ranges::transform(loaded, std::back_inserter(facts),
                           [](auto const& sequence) { return sequence->facts(); });
    return facts;
}

SequenceFacts const* Editor::activeSequence() const {
    return active ? &loaded[*active]->facts() : nullptr;
}

void Editor::activate(std::size_t index) {
    if (index >= loaded.size() || active == index)
        return;
    Stopwatch const watch;
    active = index;
    if (player.open(*loaded[index]))
        journal.say("sequence " + loaded[index]->facts().name + " is active, in " + watch.text());
    else
        tell("cannot play " + loaded[index]->facts().name + ": the engine has neither sound nor clock");
    reported = player.position();
    activeChanged.emit();
    positionChanged.emit();
}

void Editor::deactivate() {
    player.close();
    active.reset();
    reported = 0;
    activeChanged.emit();
}

void Editor::togglePlaying() {
    if (player.isPlaying())
        player.pause();
    else
        player.play();
}

void Editor::shuttle(Direction direction) {
    player.play(nextShuttleSpeed(player.speed(), direction));
}

void Editor::pause() {
    player.pause();
}

void Editor::seek(std::int64_t frame) {
    player.seek(frame);
}

void Editor::step(std::int64_t frames) {
    player.pauseAt(player.target() + frames);
}

void Editor::seekToEnd() {
    if (auto const* const sequence = activeSequence())
        player.seek(sequence->length - 1);
}

void Editor::show(ShownFrame const& frame) {
    pictureReady.emit(frame.picture);
    if (std::exchange(reported, frame.frame) != frame.frame)
        positionChanged.emit();
}

} // namespace workbench
