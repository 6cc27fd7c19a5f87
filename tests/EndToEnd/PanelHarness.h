#pragma once

#include "Doubles/FakeHost.h"
#include "Doubles/FakeLog.h"
#include "Doubles/FakeSystem.h"
#include "Doubles/MisbehavingServer.h"
#include "FcpExtension/ViewController.h"
#include "Platform/Gtk/GLibMainLoop.h"
#include "Platform/Gtk/GLibUrlParser.h"
#include "Platform/Gtk/GLibUuidGenerator.h"
#include "Platform/Gtk/GtkUserInterface.h"
#include "Platform/Gtk/GtkWebEngine.h"
#include "Platform/Gtk/RationalMediaTime.h"
#include "Platform/Gtk/SdBusNotificationCenter.h"
#include "Platform/Gtk/Stylesheet.h"
#include "VirtualDelays.h"

#include <gtkmm.h>
#include <webkit/webkit.h>

#include <functional>
#include <memory>
#include <string>

namespace fcp::test {

// Runs the loop until the condition holds. False when it does not within 20 s.
[[nodiscard]] bool waitUntil(std::function<bool()> const& condition);

// Reads the development page's address as one on the test's own server, so that no test needs the machine's
// one port 3000.
class ServerUrlParser final : public UrlParser {
public:
    explicit ServerUrlParser(MisbehavingServer const& testServer)
        : server(testServer) {}

    [[nodiscard]] std::optional<Url> parse(std::string const& text) const override;

private:
    MisbehavingServer const& server;
    GLibUrlParser parser;
};

// A container application in the test's own process, on a bus connection of its own. It hears everything that
// is posted once the constructor has returned.
class TestContainer {
public:
    using Work = std::function<std::optional<Json>(Json const& command)>; // none: leaves it unanswered

    TestContainer(MainLoop& loop, Work commandWork, std::optional<std::string> busAddress = {});

    void respond(Json const& userInfo) { center.post("com.zelvix.fcp.containerResponse", userInfo); }

    std::vector<Json> commands;

private:
    SdBusNotificationCenter center;
    Work const work;
};

// The whole panel on this platform: real web engine, widgets, loop and bus. The host, the marker files, the
// desktop and the log are doubles. The page is the witness: it reports what it heard.
class PanelHarness {
public:
    // Without an address the panel is on the session's bus.
    explicit PanelHarness(std::optional<std::string> busAddress = {});
    ~PanelHarness();

    PanelHarness(PanelHarness const&) = delete;
    PanelHarness& operator=(PanelHarness const&) = delete;

    // Serves the witness page at the panel's address, with more markup at its end.
    void serveWitness(std::string const& more = {});

    // Makes the panel and shows it in a window.
    void open() { open(urlParser); }

    // The same with addresses read by `parser`, which outlives the panel.
    void open(UrlParser& parser);

    // Opens the panel over the witness page, lets it finish loading, and hears it announced as connected.
    void connect();

    // Waits for a line of the journal.
    [[nodiscard]] bool waitForLine(std::string const& line, long times = 1) const;

    // Runs an asynchronous function's body in the page and returns its result; throws what the page throws.
    Json inPage(std::string const& body) const;

    // Sends a request from the page and returns its parsed answer.
    [[nodiscard]] Json ask(Json const& message) const;

    // Sends a request from the page and goes on; the answer appears among the events.
    void post(Json const& message) const;

    // How often the page heard an event of that name, once it says so at all.
    [[nodiscard]] int heard(std::string const& event) const;

    // Waits until the page has heard the event so often.
    [[nodiscard]] bool waitForEvent(std::string const& event, int times = 1) const;

    [[nodiscard]] Json details(std::string const& event) const;

    [[nodiscard]] WebKitWebView* engineView() const;

    // The text of every visible label and button, from the bottom of the stack to the top.
    [[nodiscard]] std::vector<std::string> visibleTexts() const;

    [[nodiscard]] FakeTimeline& timeline() const { return *hostRuntime.host->current; }

    Journal journal;
    Gtk::Window window; // owns the panel's root
    MisbehavingServer server;
    FakeFileManager fileManager{journal};
    FakeHostRuntime hostRuntime{journal};
    FakeLogSystem logs{journal};
    FakeWorkspace workspace{journal};
    GLibMainLoop realLoop;
    VirtualDelays mainLoop{realLoop};
    RationalMediaTime mediaTimes;
    SdBusNotificationCenter notificationCenter;
    Stylesheet styles{gdk_display_get_default()};
    ServerUrlParser urlParser{server};
    GtkUserInterface userInterface{panelRoot(), styles};
    GLibUuidGenerator uuids;
    GtkWebEngine webEngine{mainLoop, logs};
    std::shared_ptr<ViewController> controller;

private:
    // Made on the first call, as the window's child.
    [[nodiscard]] GtkWidget* panelRoot() const;
};

} // namespace fcp::test
