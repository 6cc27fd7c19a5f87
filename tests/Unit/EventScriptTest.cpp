#include "FcpExtension/EventScript.h"

#include "Doubles/FakeWebEngine.h"

#include <gtest/gtest.h>

namespace fcp::test {

namespace {

TEST(EventScript, IsTheWholeFixedTextAroundPayloadAndName) {
    EXPECT_EQ(eventScript("fcp:connected", "{}"),
              "(function() {\n"
              "  try {\n"
              "    var payload = JSON.parse(atob('e30='));\n"
              "    window.dispatchEvent(new CustomEvent('fcp:connected', { detail: payload }));\n"
              "  } catch(e) {\n"
              "    console.error('[Zelvix] Failed to dispatch fcp:connected:', e);\n"
              "  }\n"
              "})();");
}

TEST(EventScript, HasPiecesOf57And47And88And17Characters) {
    EXPECT_EQ(eventScript("", "").size(), 57U + 47U + 88U + 17U);
}

TEST(EventScript, EncodesThePayloadAsStandardPaddedBase64) {
    auto const encoded = [](std::string const& payload) {
        auto const script = eventScript("e", payload);
        return script.substr(57, script.find("'))") - 57);
    };
    // The vectors of RFC 4648.
    EXPECT_EQ(encoded(""), "");
    EXPECT_EQ(encoded("f"), "Zg==");
    EXPECT_EQ(encoded("fo"), "Zm8=");
    EXPECT_EQ(encoded("foo"), "Zm9v");
    EXPECT_EQ(encoded("foob"), "Zm9vYg==");
    EXPECT_EQ(encoded("fooba"), "Zm9vYmE=");
    EXPECT_EQ(encoded("foobar"), "Zm9vYmFy");
    EXPECT_EQ(encoded("\xFB\xFF\xBE"), "+/++");
    EXPECT_EQ(encoded(std::string(90, 'a')).find('\n'), std::string::npos);
}

TEST(EventScript, CarriesTextOutsideAsciiAsItsUtf8Bytes) {
    // One character per byte is what atob gives: the page repairs such text, no step here does.
    EXPECT_NE(eventScript("e", "\"\u00E9\"").find("IsOpIg=="), std::string::npos);
}

} // namespace

} // namespace fcp::test
