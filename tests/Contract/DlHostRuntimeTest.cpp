#include "Platform/Gtk/DlHostRuntime.h"
#include "FcpExtension/ProExtensionHost.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace fcp::test {

// One story, because a symbol that was loaded for everybody stays.
TEST(DlHostRuntime, FindsTheHostOnceTheProcessExportsItForEverybody) {
    DlHostRuntime runtime;
    EXPECT_EQ(runtime.proExtensionHostSingleton(), nullptr);

    auto* const ownSymbols = dlopen(EXPORTED_HOST, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(ownSymbols, nullptr) << dlerror();
    EXPECT_EQ(runtime.proExtensionHostSingleton(), nullptr);

    ASSERT_NE(dlopen(EXPORTED_HOST, RTLD_NOW | RTLD_GLOBAL), nullptr) << dlerror();
    auto const host = runtime.proExtensionHostSingleton();
    auto const singleton = reinterpret_cast<FCPXHost* (*)()>(dlsym(ownSymbols, "ProExtensionHostSingleton"));
    ASSERT_NE(host, nullptr);
    EXPECT_EQ(host.get(), singleton());
    EXPECT_EQ(host.use_count(), 0); // shares no ownership of what it did not make
    EXPECT_EQ(host->timeline(), nullptr);
}

} // namespace fcp::test
