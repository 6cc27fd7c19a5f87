#pragma once

#include <webkit/webkit.h>

#include <functional>
#include <string>
#include <string_view>

namespace fcp::bench {

struct SideOptions;

// The sequence, as the panel's host has it.
inline constexpr std::string_view timelineText =
    R"({"duration":10.5,"frameRate":29.97,"height":0,"name":"Interview","startTimecode":"00:00:00:00","width":0})";

// A bare web view in a bare window, with the panel's settings and the panel's event script. Like the panel,
// it makes and drops a web view first, and announces itself to a page
// that has finished. No code of the panel is in
// here.
class BareWindow {
public:
    using Received = std::function<void(JSCValue* message)>;

    BareWindow(SideOptions const& options, Received onMessage);

    BareWindow(BareWindow const&) = delete;
    BareWindow& operator=(BareWindow const&) = delete;

    // `payload` is JSON text.
    void sendEvent(char const* event, std::string const& payload);

    // Answers a request; `value` is JSON text, escaped as it stands in a JSON string.
    void resolve(std::string const& resolveId, std::string_view value);

    [[noreturn]] void run();

private:
    static void received(WebKitUserContentManager* manager, JSCValue* message, gpointer self);
    static void loadChanged(WebKitWebView* view, WebKitLoadEvent event, gpointer self);
    static gboolean announce(gpointer self);

    Received const onReceived;
    bool const saysFinished;
    WebKitWebView* const view; // as long as the process, like all that is made here
};

// The text of one member of a message.
[[nodiscard]] std::string textMember(JSCValue* message, char const* name);

} // namespace fcp::bench
