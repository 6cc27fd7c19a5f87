#include "Workbench/ContainerApp/LinkOpener.h"

#include <gtest/gtest.h>

namespace workbench {

TEST(LinkOpener, OpensWebAndMailLinksOnly) {
    for (auto const* link : {"http://example.com", "https://example.com:8443/a?b=c#d", "HTTPS://EXAMPLE.COM/",
                             "http://[::1]/", "https://example.com/%zz", "https://user@example.com/",
                             "mailto:ana@example.com", "MAILTO:ana@example.com?subject=x"})
        EXPECT_TRUE(isOpenable(link)) << link;
    for (auto const* link : {"",
                             "example.com",
                             "//example.com",
                             "http",
                             "http:",
                             "http://",
                             "http:/example.com",
                             "http:///path",
                             "https:example.com",
                             "file:///etc/passwd",
                             "FILE:///etc/passwd",
                             "ftp://example.com",
                             "javascript:alert(1)",
                             "data:text/html,x",
                             "about:blank",
                             "mailto",
                             "smb://x",
                             "x-apple:y",
                             "-http://example.com",
                             " http://example.com",
                             "http://example.com ",
                             "http://exam ple.com",
                             "http://example.com/\nfile:///x",
                             "http://example.com/\x7f",
                             "\thttp://example.com"})
        EXPECT_FALSE(isOpenable(link)) << link;
}

} // namespace workbench
