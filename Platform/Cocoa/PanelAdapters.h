#pragma once

#include "Platform/Cocoa/CocoaFileManager.h"
#include "Platform/Cocoa/CocoaHostRuntime.h"
#include "Platform/Cocoa/CocoaLogSystem.h"
#include "Platform/Cocoa/CocoaMainLoop.h"
#include "Platform/Cocoa/CocoaMediaTime.h"
#include "Platform/Cocoa/CocoaNotificationCenter.h"
#include "Platform/Cocoa/CocoaUrlParser.h"
#include "Platform/Cocoa/CocoaUuidGenerator.h"
#include "Platform/Cocoa/CocoaWebEngine.h"
#include "Platform/Cocoa/CocoaWorkspace.h"
#include "Ports/Platform.h"

namespace fcp {

// What all panels of a process share. A panel leaves tasks in the loop and observers in the notification
// center, which find these adapters when the panel itself is long gone. Main thread only.
class PanelAdapters {
public:
    PanelAdapters(PanelAdapters const&) = delete;
    PanelAdapters& operator=(PanelAdapters const&) = delete;

    // Made on the first call and never destroyed, so that the end of the process finds nothing half gone.
    [[nodiscard]] static PanelAdapters& ofProcess();

    // The ports of a panel with native views of its own.
    [[nodiscard]] Platform platform(UserInterface& userInterface);

private:
    PanelAdapters() = default;
    ~PanelAdapters() = default;

    CocoaFileManager fileManager;
    CocoaHostRuntime hostRuntime;
    CocoaLogSystem logs;
    CocoaMainLoop mainLoop;
    CocoaMediaTime mediaTime;
    CocoaNotificationCenter notificationCenter;
    CocoaUrlParser urlParser;
    CocoaUuidGenerator uuids;
    CocoaWebEngine webEngine;
    CocoaWorkspace workspace;
};

} // namespace fcp
