#pragma once

#include "Ports/Workspace.h"

namespace fcp {

class CocoaWorkspace final : public Workspace {
public:
    void open(Url const& url) override;
};

} // namespace fcp
