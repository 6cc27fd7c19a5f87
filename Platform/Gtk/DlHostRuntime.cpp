#include "Platform/Gtk/DlHostRuntime.h"

#include "FcpExtension/ProExtensionHost.h"

#include <dlfcn.h>

namespace fcp {

std::shared_ptr<FCPXHost> DlHostRuntime::proExtensionHostSingleton() {
    auto const singleton =
        reinterpret_cast<decltype(&ProExtensionHostSingleton)>(dlsym(RTLD_DEFAULT, hostSymbol));
    if (!singleton)
        return nullptr;
    return {std::shared_ptr<void>(), singleton()};
}

} // namespace fcp
