// The floor of what the panel does by itself: a bare web view, and the handful of lines that an answer takes.

#include "benches/Sides/BareWindow.h"
#include "benches/Sides/SideOptions.h"

#include <charconv>
#include <string>
#include <string_view>

namespace {

using namespace fcp::bench;

// As it stands inside a JSON string.
constexpr std::string_view escapedTimelineText =
    R"({\"duration\":10.5,\"frameRate\":29.97,\"height\":0,\"name\":\"Interview\",)"
    R"(\"startTimecode\":\"00:00:00:00\",\"width\":0})";

void sendFrame(BareWindow& window, int frame) {
    char text[32];
    auto const seconds = static_cast<double>(frame) * Burst::frameTicks / Burst::timescale;
    auto const end = std::to_chars(text, text + sizeof text, seconds);
    window.sendEvent("fcp:playhead-changed", "{\"seconds\":" + std::string(text, end.ptr) + "}");
}

struct Frame {
    BareWindow& window;
    int number;
};

gboolean sendFrameOnMainThread(gpointer data) {
    auto const* const frame = static_cast<Frame*>(data);
    sendFrame(frame->window, frame->number);
    return G_SOURCE_REMOVE;
}

// On the main thread at once, from another one by the main loop.
void notifyFrame(BareWindow& window, int number) {
    g_main_context_invoke_full(nullptr, G_PRIORITY_DEFAULT, sendFrameOnMainThread, new Frame{window, number},
                               [](gpointer frame) { delete static_cast<Frame*>(frame); });
}

void answer(BareWindow& window, Burst& burst, JSCValue* message) {
    auto const command = textMember(message, "command");
    if (command == "seekTo")
        return burst.run([&window](int frame) { notifyFrame(window, frame); });
    if (command == "syncAllComments")
        g_free(jsc_value_to_json(message, 0)); // however the comments go on, they are needed as text first
    window.resolve(textMember(message, "resolveId"), command == "getTimeline" ? escapedTimelineText : "true");
}

} // namespace

int main(int argc, char** argv) {
    auto const options = readSideOptions(argc, argv);
    endWithParent();
    Burst burst(options.burst, options.burstThread);
    BareWindow* shown = nullptr;
    BareWindow window(options, [&](JSCValue* message) { answer(*shown, burst, message); });
    shown = &window;
    window.run();
}
