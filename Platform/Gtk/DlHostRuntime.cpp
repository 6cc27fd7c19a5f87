#include "Platform/Gtk/DlHostRuntime.h"

#include "FcpExtension/ProExtensionHost.h"

#include <dlfcn.h>

namespace fcp {

std::shared_ptr<FCPXHost> DlHostRuntime::proExtensionHostSingleton() {
    // Looked up rather than linked: a program without a host is an ordinary case.
    auto const singleton = reinterpret_cast<decltype(&ProExtensionHostSingleton)>(
        dlsym(RTLD_DEFAULT, "ProExtensionHostSingleton"));
    if (!singleton)
        return nullptr;
    return {std::shared_ptr<void>(), singleton()};
}

} // namespace fcp
