#include "FcpExtension/ProExtensionAPI.h"
#include "Platform/Cocoa/CocoaHostRuntime.h"
#include "Platform/Cocoa/CocoaMediaTime.h"

#include <gtest/gtest.h>

namespace fcp::test {

// This program exports no host.
TEST(CocoaWithoutHost, IsAProcessLikeAnyOther) {
    CocoaHostRuntime runtime;
    CocoaMediaTime const mediaTimes;
    EXPECT_EQ(runtime.proExtensionHostSingleton(), nullptr);
    auto const api = ProExtensionAPI::create(runtime, mediaTimes);
    EXPECT_EQ(api->getPlayheadSeconds(), 0.0);
    EXPECT_EQ(api->getSequenceInfo(), std::nullopt);
    api->seekTo(1.0);
}

} // namespace fcp::test
