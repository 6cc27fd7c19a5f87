#include "Platform/Cocoa/PanelAdapters.h"

namespace fcp {

PanelAdapters& PanelAdapters::ofProcess() {
    static auto* const adapters = new PanelAdapters;
    return *adapters;
}

Platform PanelAdapters::platform(UserInterface& userInterface) {
    return {.fileManager = fileManager,
            .hostRuntime = hostRuntime,
            .logs = logs,
            .mainLoop = mainLoop,
            .mediaTime = mediaTime,
            .notificationCenter = notificationCenter,
            .urlParser = urlParser,
            .userInterface = userInterface,
            .uuids = uuids,
            .webEngine = webEngine,
            .workspace = workspace};
}

} // namespace fcp
