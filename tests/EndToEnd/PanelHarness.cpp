#include "PanelHarness.h"

#include "Platform/Gtk/GRef.h"
#include "Ports/Platform.h"

#include <stdexcept>
#include <utility>

namespace fcp::test {

namespace {

constexpr char const* panelPath = "/fcp-panel/login";

// Keeps every event that it hears and asks what it is told to ask.
constexpr char const* witnessPage = R"page(<!doctype html><meta charset="utf-8"><title>witness</title>
<body style="margin:0;background:white"><p>The page</p>
<script>
window.heard = [];
for (const name of ['fcp:connected', 'fcp:sequence-changed', 'fcp:resolve', 'fcp:playhead-changed', 'fcp:marker-clicked'])
    addEventListener(name, event => heard.push({name, detail: event.detail}));
let asked = 0;
window.ask = message => new Promise(done => {
    const resolveId = 'page-' + ++asked;
    addEventListener('fcp:resolve', event => {
        if (event.detail.resolveId === resolveId)
            done(JSON.parse(event.detail.value));
    });
    window.webkit.messageHandlers.fcpBridge.postMessage({...message, resolveId});
});
</script>)page";

struct PageCall {
    bool done = false;
    std::string text;
    std::string error;
};

void finishCall(GObject* source, GAsyncResult* result, gpointer data) {
    auto* const call = static_cast<std::shared_ptr<PageCall>*>(data);
    GError* error = nullptr;
    auto* const value =
        webkit_web_view_call_async_javascript_function_finish(WEBKIT_WEB_VIEW(source), result, &error);
    if (value) {
        GCharPtr const text(jsc_value_to_string(value));
        (*call)->text = text.get();
        g_object_unref(value);
    } else {
        (*call)->error = error->message;
        g_error_free(error);
    }
    (*call)->done = true;
    delete call;
}

void collectTexts(GtkWidget* widget, std::vector<std::string>& texts) {
    if (!gtk_widget_get_visible(widget))
        return;
    if (GTK_IS_LABEL(widget))
        texts.emplace_back(gtk_label_get_text(GTK_LABEL(widget)));
    for (auto* child = gtk_widget_get_first_child(widget); child; child = gtk_widget_get_next_sibling(child))
        collectTexts(child, texts);
}

WebKitWebView* findEngineView(GtkWidget* widget) {
    if (WEBKIT_IS_WEB_VIEW(widget))
        return WEBKIT_WEB_VIEW(widget);
    for (auto* child = gtk_widget_get_first_child(widget); child;
         child = gtk_widget_get_next_sibling(child)) {
        if (auto* const found = findEngineView(child))
            return found;
    }
    return nullptr;
}

} // namespace

bool waitUntil(std::function<bool()> const& condition) {
    bool expired = false;
    auto const expire = [&expired] {
        expired = true;
        return false;
    };
    auto deadline = Glib::signal_timeout().connect_seconds(expire, 20);
    while (!expired && !condition())
        Glib::MainContext::get_default()->iteration(true);
    deadline.disconnect();
    return !expired;
}

std::optional<Url> ServerUrlParser::parse(std::string const& text) const {
    std::string const developmentServer = "http://localhost:3000";
    return parser.parse(
        text.starts_with(developmentServer) ? server.url(text.substr(developmentServer.size())) : text);
}

TestContainer::TestContainer(MainLoop& loop, Work commandWork, std::optional<std::string> busAddress)
    : center(loop, std::move(busAddress))
    , work(std::move(commandWork)) {
    center.observe("com.zelvix.fcp.containerCommand", [this](Notification const& notification) {
        auto const& command = commands.emplace_back(notification.userInfo.value());
        if (auto const result = work(command))
            respond({{"requestId", command.at("requestId")}, {"result", *result}});
    });
    // The bus takes a moment to know of the observers: ready is who hears himself.
    auto const ready = std::make_shared<bool>(false);
    center.observe("com.zelvix.fcp.probe", [ready](Notification const&) { *ready = true; });
    if (!waitUntil([this, ready] {
            center.post("com.zelvix.fcp.probe", Json::object());
            return *ready;
        }))
        throw std::runtime_error("no bus for the test's container");
}

PanelHarness::PanelHarness(std::optional<std::string> busAddress)
    : notificationCenter(mainLoop, std::move(busAddress)) {
    hostRuntime.host = std::make_shared<FakeHost>(journal);
    hostRuntime.host->current = std::make_shared<FakeTimeline>(journal);
    timeline().sequence = std::make_shared<FakeSequence>(journal);
    fileManager.files = {"/tmp/zelvix-fcp-dev"};
}

PanelHarness::~PanelHarness() {
    controller = nullptr;
    mainLoop.elapse(Seconds(61)); // a request keeps itself and what asked for it until its time-out
    window.set_visible(false);
}

void PanelHarness::serveWitness(std::string const& more) {
    server.answer(panelPath, pageAnswer(witnessPage + more));
}

void PanelHarness::open(UrlParser& parser) {
    Platform const platform{fileManager, hostRuntime,   logs,  mainLoop,  mediaTimes, notificationCenter,
                            parser,      userInterface, uuids, webEngine, workspace};
    controller = ViewController::create(platform);
    controller->loadView();
    controller->viewDidLoad();
    window.set_decorated(false);
    window.set_default_size(400, 700);
    window.present();
}

GtkWidget* PanelHarness::panelRoot() const {
    auto* const self = const_cast<GtkWindow*>(window.gobj());
    if (!gtk_window_get_child(self))
        gtk_window_set_child(self, gtk_box_new(GTK_ORIENTATION_VERTICAL, 0));
    return gtk_window_get_child(self);
}

void PanelHarness::connect() {
    serveWitness();
    open();
    if (!waitForLine("info: didFinish: " + server.url(panelPath)))
        throw std::runtime_error("the witness page did not load");
    mainLoop.elapse(Seconds(0.5));
    if (!waitForEvent("fcp:connected"))
        throw std::runtime_error("the witness page was not told that it is connected");
}

bool PanelHarness::waitForLine(std::string const& line, long times) const {
    return waitUntil([&] { return journal.count(line) >= times; });
}

Json PanelHarness::inPage(std::string const& body) const {
    auto const call = std::make_shared<PageCall>();
    auto const script = "return JSON.stringify(await (async () => {" + body + "})()) ?? 'null'";
    webkit_web_view_call_async_javascript_function(engineView(), script.c_str(), -1, nullptr, nullptr,
                                                   nullptr, nullptr, finishCall, new std::shared_ptr(call));
    if (!waitUntil([&call] { return call->done; }))
        throw std::runtime_error("the page did not return from: " + body);
    if (!call->error.empty())
        throw std::runtime_error(call->error);
    return Json::parse(call->text);
}

Json PanelHarness::ask(Json const& message) const {
    return inPage("return ask(" + message.dump() + ")");
}

void PanelHarness::post(Json const& message) const {
    inPage("ask(" + message.dump() + ")");
}

int PanelHarness::heard(std::string const& event) const {
    return inPage("return (window.heard ?? []).filter(event => event.name === '" + event + "').length");
}

bool PanelHarness::waitForEvent(std::string const& event, int times) const {
    return waitUntil([&] { return heard(event) >= times; });
}

Json PanelHarness::details(std::string const& event) const {
    return inPage("return heard.filter(event => event.name === '" + event + "').map(event => event.detail)");
}

WebKitWebView* PanelHarness::engineView() const {
    return findEngineView(panelRoot());
}

std::vector<std::string> PanelHarness::visibleTexts() const {
    std::vector<std::string> texts;
    collectTexts(panelRoot(), texts);
    return texts;
}

} // namespace fcp::test
