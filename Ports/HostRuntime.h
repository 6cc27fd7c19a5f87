#pragma once

#include <memory>

namespace fcp {

class FCPXHost;

// The function of the hosting process that hands out its object. Looked up rather than linked, on every
// platform: a process without a host is an ordinary case.
inline constexpr char const* hostSymbol = "ProExtensionHostSingleton";

// Finds the host editor's object in the hosting process.
class HostRuntime {
public:
    virtual ~HostRuntime() = default;

    // Looks for `hostSymbol` at each call; null when no image in the process exports it, and when it hands
    // out none. Main thread only.
    [[nodiscard]] virtual std::shared_ptr<FCPXHost> proExtensionHostSingleton() = 0;
};

} // namespace fcp
