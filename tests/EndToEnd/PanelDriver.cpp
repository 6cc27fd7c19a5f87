// The whole panel, driven from outside: takes a verb with its arguments as one line of JSON on standard
// input, and gives {"value": ...} or {"error": ...} as one line on standard output. What else stands there
// begins otherwise: the panel prints lines of its own. Between two verbs the main loop rests.

#include "PanelHarness.h"

#include <gtkmm.h>

#include <cmath>
#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

namespace fcp::test {

namespace {

constexpr char const* slowPicture = "/hanging.png";

// A panel and its container application, which answers only what it is told to.
struct Session {
    PanelHarness panel;
    TestContainer container{panel.mainLoop, [](Json const&) { return std::nullopt; }};
};

class PanelDriver {
public:
    Json run(Json const& verb);

private:
    Json open(Json const& arguments);
    Json reload(Json const& arguments);
    Json close(Json const& arguments);
    Json inPage(Json const& arguments);
    Json elapse(Json const& arguments);
    Json openSequence(Json const& arguments);
    Json movePlayhead(Json const& arguments);
    Json seeks(Json const& arguments);
    Json commands(Json const& arguments);
    Json answer(Json const& arguments);

    void loadSlowly(Seconds duration);
    void waitForLoad(long loads);
    [[nodiscard]] std::string finishedLine() const;

    std::unique_ptr<Session> session;
};

Json PanelDriver::run(Json const& verb) {
    using Verb = Json (PanelDriver::*)(Json const&);
    static std::map<std::string, Verb> const verbs{
        {"open", &PanelDriver::open},
        {"reload", &PanelDriver::reload},
        {"close", &PanelDriver::close},
        {"inPage", &PanelDriver::inPage},
        {"elapse", &PanelDriver::elapse},
        {"openSequence", &PanelDriver::openSequence},
        {"movePlayhead", &PanelDriver::movePlayhead},
        {"seeks", &PanelDriver::seeks},
        {"commands", &PanelDriver::commands},
        {"answer", &PanelDriver::answer},
    };
    return (this->*verbs.at(verb.at("verb").get<std::string>()))(verb);
}

Json PanelDriver::open(Json const& arguments) {
    session = std::make_unique<Session>();
    session->panel.timeline().sequence = nullptr;
    Seconds const loading(arguments.at("seconds").get<double>());
    if (loading > Seconds(0)) {
        loadSlowly(loading);
    } else {
        session->panel.serveWitness();
        session->panel.open();
    }
    waitForLoad(1);
    return nullptr;
}

// The page waits for a picture that comes when the time has passed.
void PanelDriver::loadSlowly(Seconds duration) {
    auto& panel = session->panel;
    panel.server.answer(slowPicture, {"", ServerAnswer::Then::Stall});
    panel.serveWitness(std::string("<img src=") + slowPicture + ">");
    panel.open();
    if (!waitUntil([&panel] { return panel.server.stalled() == 1; }))
        throw std::runtime_error("the page did not ask for its picture");
    panel.mainLoop.elapse(duration);
    panel.server.endStalled(ServerAnswer::Then::Close);
}

void PanelDriver::waitForLoad(long loads) {
    if (!session->panel.waitForLine(finishedLine(), loads))
        throw std::runtime_error("the page did not load");
}

std::string PanelDriver::finishedLine() const {
    return "info: didFinish: " + session->panel.server.url("/fcp-panel/login");
}

Json PanelDriver::reload(Json const&) {
    auto const loads = session->panel.journal.count(finishedLine());
    webkit_web_view_reload(session->panel.engineView());
    waitForLoad(loads + 1);
    return nullptr;
}

Json PanelDriver::close(Json const&) {
    session = nullptr;
    return nullptr;
}

Json PanelDriver::inPage(Json const& arguments) {
    return session->panel.inPage(arguments.at("body").get<std::string>());
}

Json PanelDriver::elapse(Json const& arguments) {
    session->panel.mainLoop.elapse(Seconds(arguments.at("seconds").get<double>()));
    return nullptr;
}

Json PanelDriver::openSequence(Json const& arguments) {
    constexpr std::int32_t perSecond = 1'000'000;
    constexpr std::int32_t perFrameSecond = 1'000'000'000;
    auto& panel = session->panel;
    auto const sequence = std::make_shared<FakeSequence>(panel.journal);
    sequence->sequenceName = arguments.at("name").get<std::string>();
    sequence->length = mediaTime(std::llround(arguments.at("duration").get<double>() * perSecond), perSecond);
    sequence->frame =
        mediaTime(std::llround(perFrameSecond / arguments.at("frameRate").get<double>()), perFrameSecond);
    panel.timeline().sequence = sequence;
    panel.timeline().notifySequence();
    return nullptr;
}

// To null the host moves it when its position is no number, which JSON cannot hold.
Json PanelDriver::movePlayhead(Json const& arguments) {
    auto& timeline = session->panel.timeline();
    auto const& seconds = arguments.at("seconds");
    if (seconds.is_number()) {
        timeline.notifyPlayhead(seconds.get<double>());
    } else {
        timeline.playhead = invalidTime();
        timeline.notifyPlayhead();
    }
    return nullptr;
}

Json PanelDriver::seeks(Json const&) {
    auto result = Json::array();
    for (auto const& move : session->panel.timeline().moves)
        result.push_back(static_cast<double>(move.value) / move.timescale);
    return result;
}

Json PanelDriver::commands(Json const&) {
    while (Glib::MainContext::get_default()->iteration(false)) {
    }
    return session->container.commands;
}

Json PanelDriver::answer(Json const& arguments) {
    session->container.respond(
        {{"requestId", arguments.at("requestId")}, {"result", arguments.at("result")}});
    return nullptr;
}

Json reply(PanelDriver& driver, std::string const& line) {
    try {
        return {{"value", driver.run(Json::parse(line))}};
    } catch (std::exception const& error) {
        return {{"error", error.what()}};
    }
}

} // namespace

} // namespace fcp::test

int main() {
    auto const application =
        Gtk::Application::create("com.zelvix.fcp.driver", Gio::Application::Flags::NON_UNIQUE);
    g_log_set_always_fatal(
        static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_ERROR | G_LOG_LEVEL_WARNING));
    fcp::test::PanelDriver driver;
    for (std::string line; std::getline(std::cin, line);)
        std::cout << fcp::test::reply(driver, line).dump() << '\n' << std::flush;
}
