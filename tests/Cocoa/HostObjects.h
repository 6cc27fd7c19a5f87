#pragma once

#include "Doubles/Journal.h"
#include "FcpExtension/ProExtensionHost.h"

#include <optional>
#include <string>

namespace fcp::test {

// The host editor's objects, in Objective-C, and what this process exports as its host. They answer the
// selectors of the contract and no others: any other message raises. Each message that they get is noted.
class HostObjects {
public:
    // With a timeline and an active sequence.
    HostObjects();

    // What was exported goes, and its observers with it.
    ~HostObjects();

    HostObjects(HostObjects const&) = delete;
    HostObjects& operator=(HostObjects const&) = delete;

    // "host timeline", "timeline add:", ...; also "host dealloc" and the like when an object ends.
    Journal journal;

    // The process's function hands out nil from here on; the objects live as long as somebody holds them.
    void dropHost();
    void dropTimeline();
    void dropSequence();

    // Another one, without observers, in the place of the one before.
    void renewTimeline();

    void setPlayhead(CMTime time);
    void setDurations(CMTime duration, CMTime frameDuration);
    void setName(std::optional<std::string> const& name);

    // The argument of the latest "movePlayheadTo:".
    [[nodiscard]] CMTime movedTo() const;

    // Of the present timeline.
    [[nodiscard]] int observers() const;
    [[nodiscard]] bool removedWhatWasAdded() const;

    // Keeps the observers that were added, beyond their removal too.
    void keepObservers();

    // Tells the kept observers, on the calling thread, which need not have a pool.
    void notifyPlayhead();
    void notifySequence();
};

} // namespace fcp::test
