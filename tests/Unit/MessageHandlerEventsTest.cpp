#include "HandlerFixture.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace fcp::test {

namespace {

using MessageHandlerEvents = HandlerFixture;

TEST_F(MessageHandlerEvents, AnnounceTheConnectionThenTheSequence) {
    handler->notifyConnected();
    EXPECT_EQ(page->eventNames(), (Lines{"fcp:connected", "fcp:sequence-changed"}));
    EXPECT_EQ(page->events()[0].detail, Json::object());
    EXPECT_EQ(page->events()[1].detail, ask({{"command", "getTimeline"}}));
}

TEST_F(MessageHandlerEvents, CarryTheEmptyObjectAsExactlyOneBase64Text) {
    handler->notifyConnected();
    EXPECT_NE(page->scripts.at(0).find("atob('e30=')"), std::string::npos);
}

TEST_F(MessageHandlerEvents, AnnounceTheConnectionAloneWithoutASequenceATimelineOrAHost) {
    platform.timeline().sequence = nullptr;
    handler->notifyConnected();
    platform.hostRuntime.host->current = nullptr;
    handler->notifyConnected();
    EXPECT_EQ(page->eventNames(), (Lines{"fcp:connected", "fcp:connected"}));
}

TEST_F(MessageHandlerEvents, DropASequenceThatCannotBeWritten) {
    platform.timeline().sequence->length = {0, 0, CMTime::Valid | CMTime::NegativeInfinity, 0};
    handler->notifyConnected();
    platform.timeline().notifySequence();
    EXPECT_EQ(page->eventNames(), Lines{"fcp:connected"});
}

TEST_F(MessageHandlerEvents, CarryResultsEncodedTwice) {
    post({{"command", "getTimeline"}, {"resolveId", "r1"}});
    auto const detail = page->events().at(0).detail;
    EXPECT_EQ(detail.size(), 2U);
    EXPECT_EQ(detail.at("resolveId"), "r1");
    EXPECT_EQ(detail.at("value"), R"({"duration":10.5,"frameRate":29.97,"height":0,"name":"Interview",)"
                                  R"("startTimecode":"00:00:00:00","width":0})");
}

TEST_F(MessageHandlerEvents, CarryScalarResultsAsJsonFragments) {
    platform.timeline().playhead = mediaTime(25, 2);
    post({{"command", "getPlayhead"}, {"resolveId", "a"}});
    post({{"command", "isFCPRunning"}, {"resolveId", "b"}});
    attachBridge();
    post({{"command", "selectOutputFolder"}, {"resolveId", "c"}});
    bridge->folders.back().resume("/x \"y\"");
    EXPECT_EQ(page->events().at(0).detail.at("value"), "12.5");
    EXPECT_EQ(page->events().at(1).detail.at("value"), "true");
    EXPECT_EQ(page->events().at(2).detail.at("value"), R"("/x \"y\"")");
}

TEST_F(MessageHandlerEvents, CarryNoValueAsTheFourCharactersNull) {
    post({{"command", "nonsense"}, {"resolveId", "r"}});
    EXPECT_EQ(page->events().at(0).detail.at("value"), "null");
}

TEST_F(MessageHandlerEvents, CarryARejectedResultAsNullWhereTheSamePayloadIsDropped) {
    attachBridge();
    Json const unwritable{{"id", "\xFF"}};
    post({{"command", "getMarkerAtTime"}, {"seconds", 1}, {"resolveId", "r"}});
    bridge->markers.back().resume(unwritable);
    EXPECT_EQ(page->events().at(0).detail.at("value"), "null");
    platform.timeline().notifyPlayhead(1);
    platform.timeline().notifyPlayhead(9);
    bridge->markers.back().resume(unwritable); // the same value as the payload of "fcp:marker-clicked"
    EXPECT_EQ(page->eventNames(), (Lines{"fcp:resolve", "fcp:playhead-changed", "fcp:playhead-changed"}));
}

TEST_F(MessageHandlerEvents, NameTheEventTwiceInTheirScript) {
    handler->notifyConnected();
    auto const& script = page->scripts.at(1);
    EXPECT_NE(script.find("CustomEvent('fcp:sequence-changed', "), std::string::npos);
    EXPECT_NE(script.find("Failed to dispatch fcp:sequence-changed:"), std::string::npos);
}

TEST_F(MessageHandlerEvents, GoNowhereSilentlyWhenTheWebViewIsGone) {
    page = nullptr;
    journal.take();
    testing::internal::CaptureStdout();
    handler->notifyConnected();
    post({{"command", "isFCPRunning"}, {"resolveId", "r"}});
    platform.timeline().notifySequence();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_TRUE(journal.only({"event", "info", "debug", "error"}).empty());
}

TEST_F(MessageHandlerEvents, NeverKeepTheWebViewAlive) {
    std::weak_ptr const weak = page;
    page = nullptr;
    EXPECT_TRUE(weak.expired());
}

TEST_F(MessageHandlerEvents, PrintOneLineWhenTheirScriptFails) {
    post({{"command", "isFCPRunning"}, {"resolveId", "r"}});
    testing::internal::CaptureStdout();
    page->completions.at(0)("Unsupported result type");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "[Zelvix] evaluateJavaScript error for fcp:resolve: Unsupported result type\n");
}

TEST_F(MessageHandlerEvents, PrintOneLineThoughTheErrorTextHoldsLineFeeds) {
    handler->notifyConnected();
    testing::internal::CaptureStdout();
    page->completions.at(0)("first\nsecond\r\nthird");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "[Zelvix] evaluateJavaScript error for fcp:connected: first second  third\n");
}

// Standard output as a reader at the end of a pipe sees it: nothing of it until it is flushed.
class PipedStdout {
public:
    PipedStdout() {
        std::fflush(stdout);
        EXPECT_EQ(::pipe2(ends, O_NONBLOCK), 0);
        ::dup2(ends[1], STDOUT_FILENO);
        std::setvbuf(stdout, nullptr, _IOFBF, BUFSIZ);
    }

    ~PipedStdout() {
        ::dup2(original, STDOUT_FILENO);
        for (int const descriptor : {original, ends[0], ends[1]})
            ::close(descriptor);
    }

    PipedStdout(PipedStdout const&) = delete;
    PipedStdout& operator=(PipedStdout const&) = delete;

    [[nodiscard]] std::string arrived() const {
        char text[256];
        auto const length = ::read(ends[0], text, sizeof text);
        return {text, static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
    }

private:
    int const original = ::dup(STDOUT_FILENO);
    int ends[2]{};
};

TEST_F(MessageHandlerEvents, PrintTheirLineAtOnceIntoAPipeToo) {
    handler->notifyConnected();
    std::string arrived;
    {
        PipedStdout const piped;
        page->completions.at(0)("gone");
        arrived = piped.arrived();
    }
    EXPECT_EQ(arrived, "[Zelvix] evaluateJavaScript error for fcp:connected: gone\n");
}

TEST_F(MessageHandlerEvents, PrintNothingWhenTheirScriptRuns) {
    handler->notifyConnected();
    testing::internal::CaptureStdout();
    page->completions.at(0)(std::nullopt);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(MessageHandlerEvents, MayFailAfterTheHandlerIsGone) {
    handler->notifyConnected();
    handler = nullptr;
    testing::internal::CaptureStdout();
    page->completions.at(0)("gone");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "[Zelvix] evaluateJavaScript error for fcp:connected: gone\n");
}

} // namespace

} // namespace fcp::test
