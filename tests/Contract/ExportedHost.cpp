#include "FcpExtension/ProExtensionHost.h"

// Stands in for a program that exports its host: the test decides for whom it is loaded.

namespace {

class Host final : public fcp::FCPXHost {
public:
    [[nodiscard]] std::shared_ptr<fcp::FCPXTimeline> timeline() const override { return nullptr; }
};

} // namespace

fcp::FCPXHost* ProExtensionHostSingleton() {
    static Host host;
    return &host;
}
