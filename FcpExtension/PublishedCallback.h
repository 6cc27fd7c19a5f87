#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace fcp {

// A callback that one thread installs while another may already be calling it. Replaced callbacks are kept
// until the end, because the caller's thread may still be inside one; they are few.
template <typename Argument>
class PublishedCallback {
public:
    using Function = std::function<void(Argument)>;

    // The installing thread only.
    void install(Function function) {
        installed.push_back(std::make_unique<Function const>(std::move(function)));
        current.store(installed.back().get(), std::memory_order_release);
    }

    // Any thread; null before the first installation. Valid as long as this object.
    [[nodiscard]] Function const* get() const { return current.load(std::memory_order_acquire); }

private:
    std::vector<std::unique_ptr<Function const>> installed;
    std::atomic<Function const*> current = nullptr;
};

} // namespace fcp
