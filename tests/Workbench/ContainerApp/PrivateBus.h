#pragma once

#include "Workbench/ContainerApp/TemporaryFolder.h"

#include <string>
#include <sys/types.h>

namespace workbench {

// A session bus that can be killed and started again under the same address. While it lives, that address is
// the one in the environment of this process and of those that it starts.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();

    PrivateBus(PrivateBus const&) = delete;
    PrivateBus& operator=(PrivateBus const&) = delete;

    void start();
    void kill();

private:
    TemporaryFolder folder;
    std::string before;
    pid_t process = 0;
};

} // namespace workbench
