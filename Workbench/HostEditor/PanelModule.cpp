#include "Workbench/HostEditor/PanelModule.h"

#include "Workbench/HostEditor/ProgramFolder.h"

#include <dlfcn.h>

namespace workbench {

namespace {

constexpr auto ModuleName = "libfcp-extension.so";

std::string loaderComplaint() {
    auto const* const complaint = dlerror();
    return complaint ? complaint : "the loader gives no reason";
}

} // namespace

std::filesystem::path defaultPanelModule() {
    auto beside = programFolder() / ModuleName;
    std::error_code error;
    if (std::filesystem::exists(beside, error))
        return beside;
    return (programFolder() / WORKBENCH_MODULE_FOLDER / ModuleName).lexically_normal();
}

std::variant<GtkWidget*, std::string> makePanel(std::filesystem::path const& module) {
    std::error_code error;
    if (!std::filesystem::exists(module, error))
        return module.string() + " is missing";
    // By its whole path: a bare name would be looked for among the system's libraries.
    auto* const handle = dlopen(std::filesystem::absolute(module).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle)
        return loaderComplaint();
    auto* const entry = dlsym(handle, "fcpExtensionMakePanel");
    if (!entry)
        return module.string() + " is no panel module: " + loaderComplaint();
    auto* const widget = reinterpret_cast<decltype(&fcpExtensionMakePanel)>(entry)();
    if (!widget)
        return module.string() + " made no panel";
    return widget;
}

} // namespace workbench
