#include "Workbench/ContainerApp/ContainerApp.h"

#include <glib-unix.h>

#include <csignal>
#include <utility>

namespace workbench {

namespace {

using namespace std::chrono_literals;

constexpr auto FirstRetry = 250ms;
constexpr auto LongestRetry = 4000ms;

// A bus that stays away this long has ended with its session.
constexpr auto BusPatience = 30s;

// How long an export may go on when the program is told to end: who told it will not wait for long.
constexpr auto ExportPatience = 1500ms;

// The window follows a burst of writes in steps.
constexpr auto RefreshDelay = 100ms;

int endAsked(void* app) {
    static_cast<ContainerApp*>(app)->requestEnd();
    return G_SOURCE_CONTINUE;
}

// A signal of the operating system, taken for as long as this lives.
class SignalSource {
public:
    SignalSource(int signal, ContainerApp& app)
        : source{g_unix_signal_add(signal, endAsked, &app)} {}

    ~SignalSource() { g_source_remove(source); }

    SignalSource(SignalSource const&) = delete;
    SignalSource& operator=(SignalSource const&) = delete;

private:
    unsigned source;
};

} // namespace

// Everything that commands put to work.
struct ContainerApp::Work {
    Work(Store& store, FolderChooser::Problem const& problem)
        : exporter{postToMainLoop}
        , exports{store.comments, store.sequences, store.settings, store.exports, exporter}
        , folders{store.settings, problem}
        , handler{{store.comments, store.markers, exports, folders, links}, problem} {}

    Exporter exporter;
    ExportDesk exports;
    FolderChooser folders;
    LinkOpener links;
    CommandHandler handler;
};

void ContainerApp::UnrefLoop::operator()(GMainLoop* ended) const {
    g_main_loop_unref(ended);
}

ContainerApp::ContainerApp(ContainerOptions theOptions, Console const& theConsole)
    : options{std::move(theOptions)}
    , console{theConsole}
    , loop{g_main_loop_new(nullptr, FALSE)} {
    if (options.database.empty())
        options.database = defaultDatabase();
}

ContainerApp::~ContainerApp() = default;

ExitCode ContainerApp::start() {
    auto problem = std::string{};
    presence = makePresence();
    // The name comes before the database: a second instance must not touch what the first one has open.
    switch (presence->connect(problem)) {
    case BusPresence::Outcome::AlreadyRunning:
        console.complain("another one is running already");
        return ExitCode::AlreadyRunning;
    case BusPresence::Outcome::NoBus:
        console.complain("there is no session bus: " + problem);
        return ExitCode::NoBus;
    case BusPresence::Outcome::Connected:
        break;
    }
    return openStore();
}

ExitCode ContainerApp::openStore() {
    try {
        store = std::make_unique<Store>(options.database);
    } catch (DatabaseError const& error) {
        console.complain(options.database + ": " + error.what());
        return ExitCode::NoDatabase;
    }
    makeWork();
    return ExitCode::Done;
}

void ContainerApp::makeWork() {
    work = std::make_unique<Work>(*store, [this](std::string const& sentence) { complain(sentence); });
    work->exports.setObserver(
        [this](ExportState state, std::string const& message) { exportChanged(state, message); });
    store->comments.setObserver([this](std::string const& key, std::uint64_t revision) {
        if (presence)
            presence->markersChanged(key, revision);
        refresh();
    });
}

void ContainerApp::setViewer(Viewer theViewer) {
    viewer = std::move(theViewer);
    work->folders.setDialog(viewer.chooseFolder);
    refresh();
}

ExitCode ContainerApp::run() {
    auto const signals = std::make_unique<SignalSource>(SIGTERM, *this);
    auto const interrupts = std::make_unique<SignalSource>(SIGINT, *this);
    std::signal(SIGPIPE, SIG_IGN); // whoever read our lines may go
    if (!presence->serve(store->comments, store->sequences)) {
        console.complain("the session bus refuses to take the markers");
        return ExitCode::NoBus;
    }
    announce();
    g_main_loop_run(loop.get());
    if (presence)
        presence->drain();
    try {
        store->database.checkpoint();
    } catch (DatabaseError const& error) {
        console.complain(error.what());
    }
    return code;
}

void ContainerApp::requestEnd() {
    if (!work->exporter.isRunning())
        quit(ExitCode::Done);
    else if (std::exchange(ending, true))
        work->exporter.cancel();
    else
        patienceTimer.start(ExportPatience, [this] { work->exporter.cancel(); });
}

std::unique_ptr<BusPresence> ContainerApp::makePresence() {
    return std::make_unique<BusPresence>(BusPresence::Callbacks{
        .command = [this](Command const& command) { work->handler.handle(command); },
        .answered = [this](std::string const& line) { console.tell(line); },
        .activeSequence = [this](auto const& sequence) { activeSequenceChanged(sequence); },
        .lost = [this] { busLost(); }});
}

void ContainerApp::announce() {
    auto const elapsed = std::chrono::steady_clock::now() - begun;
    auto const milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count();
    console.say("database " + options.database + ", " + std::to_string(store->comments.count()) +
                " comments, ready in " + std::to_string(milliseconds) + " ms");
}

void ContainerApp::activeSequenceChanged(std::optional<HostSequence> const& sequence) {
    try {
        store->sequences.setActive(sequence);
    } catch (DatabaseError const& error) {
        complain(error.what());
    }
    refresh();
}

void ContainerApp::exportChanged(ExportState state, std::string const& message) {
    if (state == ExportState::Failed)
        complain(message);
    else
        console.tell(message);
    refresh();
    if (ending && state != ExportState::Running)
        quit(ExitCode::Done);
}

void ContainerApp::busLost() {
    complain("the session bus is gone; trying to find it again");
    lostAt = std::chrono::steady_clock::now();
    presence.reset();
    reconnectTimer.start(FirstRetry, [this] { reconnect(FirstRetry * 2); });
}

void ContainerApp::reconnect(std::chrono::milliseconds next) {
    auto problem = std::string{};
    presence = makePresence();
    auto const outcome = presence->connect(problem);
    if (outcome == BusPresence::Outcome::AlreadyRunning) {
        complain("another one is running already");
        quit(ExitCode::AlreadyRunning);
        return;
    }
    if (outcome == BusPresence::Outcome::Connected && presence->serve(store->comments, store->sequences)) {
        console.say("back on the session bus");
        return;
    }
    presence.reset();
    if (std::chrono::steady_clock::now() - lostAt > BusPatience) {
        complain("the session bus does not come back");
        quit(ExitCode::NoBus);
        return;
    }
    reconnectTimer.start(
        next, [this, next] { reconnect(std::min(next * 2, std::chrono::milliseconds{LongestRetry})); });
}

void ContainerApp::complain(std::string const& sentence) {
    console.complain(sentence);
    if (viewer.complain)
        viewer.complain(sentence);
}

void ContainerApp::refresh() {
    if (!viewer.show || refreshTimer.isPending())
        return;
    refreshTimer.start(RefreshDelay, [this] {
        try {
            viewer.show(readWindowContent(*store));
        } catch (DatabaseError const& error) {
            complain(error.what());
        }
    });
}

void ContainerApp::quit(ExitCode theCode) {
    code = theCode;
    g_main_loop_quit(loop.get());
}

} // namespace workbench
