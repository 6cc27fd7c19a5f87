#pragma once

#include "Ports/Url.h"

namespace fcp {

// The desktop around the panel.
class Workspace {
public:
    virtual ~Workspace() = default;

    // Opens the address with its default handler. Returns at once; nobody learns whether it worked.
    virtual void open(Url const& url) = 0;
};

} // namespace fcp
