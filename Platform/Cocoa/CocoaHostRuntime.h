#pragma once

#include "Ports/HostRuntime.h"

namespace fcp {

// Finds the host by name among the images of the running process.
class CocoaHostRuntime final : public HostRuntime {
public:
    // Retains the host's object as long as the answer lives. Null also when the host hands out nil.
    [[nodiscard]] std::shared_ptr<FCPXHost> proExtensionHostSingleton() override;
};

} // namespace fcp
