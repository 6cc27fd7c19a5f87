#pragma once

#include "Doubles/FakeHost.h"
#include "Doubles/FakeLog.h"
#include "Doubles/FakeMainLoop.h"
#include "Doubles/FakeNotificationCenter.h"
#include "Doubles/FakeSystem.h"
#include "Doubles/FakeView.h"
#include "Doubles/FakeWebEngine.h"
#include "Doubles/Journal.h"
#include "Ports/Platform.h"

namespace fcp::test {

// Every port's double over one journal, with a host that has a timeline and an active sequence.
struct FakePlatform {
    FakePlatform() {
        hostRuntime.host = std::make_shared<FakeHost>(journal);
        hostRuntime.host->current = std::make_shared<FakeTimeline>(journal);
        timeline().sequence = std::make_shared<FakeSequence>(journal);
    }

    FakePlatform(FakePlatform const&) = delete;
    FakePlatform& operator=(FakePlatform const&) = delete;

    [[nodiscard]] FakeTimeline& timeline() const { return *hostRuntime.host->current; }

    Journal journal;
    FakeFileManager fileManager{journal};
    FakeHostRuntime hostRuntime{journal};
    FakeLogSystem logs{journal};
    FakeMainLoop mainLoop;
    FakeMediaTime mediaTimes;
    FakeNotificationCenter notificationCenter{journal};
    FakeUrlParser urlParser;
    FakeUserInterface userInterface{journal};
    FakeUuidGenerator uuids;
    FakeWebEngine webEngine{journal};
    FakeWorkspace workspace{journal};

    Platform const ports{fileManager, hostRuntime,   logs,  mainLoop,  mediaTimes, notificationCenter,
                         urlParser,   userInterface, uuids, webEngine, workspace};
};

} // namespace fcp::test
