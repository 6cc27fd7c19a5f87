#include "Workbench/ContainerApp/BusPresence.h"

#include <stdexcept>
#include <utility>

namespace workbench {

namespace {

constexpr char const* ownName = "com.zelvix.fcp.Container";

}

BusPresence::BusPresence(Callbacks theCallbacks)
    : callbacks{std::move(theCallbacks)} {}

BusPresence::Outcome BusPresence::connect(std::string& problem) {
    bus = Bus::open(problem);
    if (!bus)
        return Outcome::NoBus;
    commands = std::make_unique<CommandServer>(*bus, callbacks.command, callbacks.answered);
    // Heard before the name is there: whoever sees the name may send at once.
    auto const name = commands->listen() ? bus->requestName(ownName) : Bus::Name::Failed;
    if (name == Bus::Name::Taken)
        return Outcome::AlreadyRunning;
    problem = "the bus refuses";
    return name == Bus::Name::Owned ? Outcome::Connected : Outcome::NoBus;
}

bool BusPresence::serve(CommentStore& comments, SequenceStore& sequences) {
    markers = std::make_unique<MarkersService>(*bus, comments, sequences);
    imports = std::make_unique<ImportService>(
        *bus, [this](std::string const& file, std::string const& key) { return import(file, key); });
    editor = std::make_unique<EditorClient>(*bus, [this] { editorChanged(); });
    bus->serve(callbacks.lost);
    return markers->publish() && imports->publish() && editor->follow();
}

void BusPresence::drain() {
    bus->drain();
}

void BusPresence::markersChanged(std::string const& sequenceKey, std::uint64_t revision) {
    if (markers)
        markers->changed(sequenceKey, revision);
}

std::string BusPresence::import(std::string const& file, std::string const& sequenceKey) {
    if (sequenceKey.empty() && !editor->isSettled())
        throw std::runtime_error("the editor has not told yet which sequence is open: try again");
    return callbacks.import(file, sequenceKey);
}

void BusPresence::editorChanged() {
    // A command must not land in the wrong sequence because the editor's answer is on its way.
    if (!editor->isSettled()) {
        commands->hold();
        return;
    }
    callbacks.activeSequence(editor->activeSequence());
    commands->release();
}

} // namespace workbench
