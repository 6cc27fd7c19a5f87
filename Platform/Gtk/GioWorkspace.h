#pragma once

#include "Ports/Workspace.h"

namespace fcp {

// Hands addresses to the desktop's default handlers. Main thread only.
class GioWorkspace final : public Workspace {
public:
    void open(Url const& url) override;
};

} // namespace fcp
