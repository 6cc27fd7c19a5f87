#pragma once

#include <memory>

namespace fcp {

class FCPXHost;

// Finds the host editor's object in the hosting process.
class HostRuntime {
public:
    virtual ~HostRuntime() = default;

    // Asks the hosting process for ProExtensionHostSingleton by name at each call; null when no image in
    // the process exports it. Main thread only.
    [[nodiscard]] virtual std::shared_ptr<FCPXHost> proExtensionHostSingleton() = 0;
};

} // namespace fcp
