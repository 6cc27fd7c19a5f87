#pragma once

#include "Ports/HostRuntime.h"

namespace fcp {

// Finds the host by name in the running process: in the program itself, if it exports the symbol, and in what
// was loaded for everybody to see. A module that was loaded for itself alone is not searched.
class DlHostRuntime final : public HostRuntime {
public:
    // Shares no ownership: the host's object lives as long as the process.
    [[nodiscard]] std::shared_ptr<FCPXHost> proExtensionHostSingleton() override;
};

} // namespace fcp
