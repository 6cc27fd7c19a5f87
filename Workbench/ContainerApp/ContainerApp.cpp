#include "Workbench/ContainerApp/ContainerApp.h"

#include "Workbench/ContainerApp/CommentImport.h"
#include "Workbench/ContainerApp/Elapsed.h"
#include "Workbench/ContainerApp/ImportError.h"

#include <glib-unix.h>

#include <algorithm>
#include <csignal>
#include <utility>

namespace workbench {

namespace {

using namespace std::chrono_literals;

constexpr auto firstRetry = 250ms;
constexpr auto longestRetry = 4000ms;

// A bus that stays away this long has ended with its session.
constexpr auto busPatience = 30s;

// How long an export may go on when the program is told to end: who told it will not wait for long.
constexpr auto exportPatience = 1500ms;

// Without a write for so long the program is idle: the disk may be waited for.
constexpr auto idleDelay = 1000ms;

// The window follows a burst of writes in steps, and takes at most a tenth of the time: commands come first.
constexpr auto shortestRefreshDelay = 100ms;
constexpr auto refreshShare = 10;

constexpr auto progressStep = 100ms;

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
        , imports{store.comments, store.sequences}
        , handler{{store.comments, store.markers, exports, folders, links}, problem} {}

    Exporter exporter;
    ExportDesk exports;
    FolderChooser folders;
    LinkOpener links;
    CommentImport imports;
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
        idleTimer.start(idleDelay, [this] { attempt([this] { store->database.takeLogIn(); }); });
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
    if (options.importFile.empty())
        announce();
    g_main_loop_run(loop.get());
    if (presence)
        presence->drain();
    attempt([this] { store->database.emptyLog(); });
    return code;
}

void ContainerApp::showSequence(std::string const& key) {
    shown = key == store->sequences.activeKey() ? std::string{} : key;
    refresh();
}

void ContainerApp::startExport(std::string const& format) {
    attempt([&] {
        if (auto const refusal = work->exports.start({{"format", format}, {"sequenceId", shownKey()}}))
            complain("the export was not started: " + *refusal);
    });
}

void ContainerApp::cancelExport() {
    work->exports.cancel([](bool) {});
}

void ContainerApp::chooseFolder() {
    attempt([this] { work->folders.choose([this](std::optional<std::string> const&) { refresh(); }); });
}

void ContainerApp::import(std::string const& file) {
    attempt([&] {
        try {
            viewer.tell(importFile(file, shownKey()));
        } catch (ImportError const& error) {
            complain(error.what());
        }
    });
}

void ContainerApp::requestEnd() {
    if (!work->exporter.isRunning())
        quit(ExitCode::Done);
    else if (std::exchange(ending, true))
        work->exporter.cancel();
    else
        patienceTimer.start(exportPatience, [this] { work->exporter.cancel(); });
}

std::unique_ptr<BusPresence> ContainerApp::makePresence() {
    return std::make_unique<BusPresence>(BusPresence::Callbacks{
        .command = [this](Command const& command) { work->handler.handle(command); },
        .answered = console.isVerbose() ? [this](std::string const& line) { console.tell(line); }
                                        : CommandServer::Observer{},
        .activeSequence = [this](auto const& sequence) { activeSequenceChanged(sequence); },
        .import = [this](std::string const& file, std::string const& key) { return importFile(file, key); },
        .lost = [this] { busLost(); }});
}

void ContainerApp::announce() {
    auto const elapsed = Clock::now() - begun;
    auto const milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count();
    console.say("database " + options.database + ", " + std::to_string(store->comments.count()) +
                " comments, ready in " + std::to_string(milliseconds) + " ms");
}

void ContainerApp::activeSequenceChanged(std::optional<HostSequence> const& sequence) {
    attempt([&] { store->sequences.setActive(sequence); });
    if (!options.importFile.empty())
        importAndEnd();
    refresh();
}

std::string ContainerApp::importFile(std::string const& file, std::string const& sequenceKey) {
    auto const begunAt = Clock::now();
    auto const key = sequenceKey.empty() ? store->sequences.activeKey() : sequenceKey;
    auto const sentence = sentenceFor(work->imports.read(file, key));
    console.tell(sentence + " from " + file + elapsedSince(begunAt));
    return sentence;
}

// The program was started for this alone.
void ContainerApp::importAndEnd() {
    auto const file = std::exchange(options.importFile, {});
    auto result = ExitCode::Done;
    try {
        console.say(importFile(file, options.sequence));
    } catch (ImportError const& error) {
        console.complain(error.what());
        result = ExitCode::NotImported;
    } catch (DatabaseError const& error) {
        console.complain(error.what());
        result = ExitCode::NoDatabase;
    }
    quit(result);
}

std::string ContainerApp::shownKey() {
    return shown.empty() ? store->sequences.activeKey() : shown;
}

void ContainerApp::showProgress() {
    auto const progress = work->exports.progress();
    if (viewer.progress)
        viewer.progress(progress);
    if (progress)
        progressTimer.start(progressStep, [this] { showProgress(); });
}

void ContainerApp::exportChanged(ExportState state, std::string const& message) {
    showProgress();
    if (state == ExportState::Running)
        exportBegunAt = Clock::now();
    auto const isOver = state == ExportState::Done || state == ExportState::Cancelled;
    if (state == ExportState::Failed)
        complain(message);
    else
        console.tell(message + (isOver ? elapsedSince(exportBegunAt) : ""));
    refresh();
    if (ending && state != ExportState::Running)
        quit(ExitCode::Done);
}

void ContainerApp::busLost() {
    complain("the session bus is gone; trying to find it again");
    lostAt = Clock::now();
    presence.reset();
    reconnectTimer.start(firstRetry, [this] { reconnect(firstRetry * 2); });
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
    if (Clock::now() - lostAt > busPatience) {
        complain("the session bus does not come back");
        quit(ExitCode::NoBus);
        return;
    }
    reconnectTimer.start(
        next, [this, next] { reconnect(std::min(next * 2, std::chrono::milliseconds{longestRetry})); });
}

void ContainerApp::complain(std::string const& sentence) {
    console.complain(sentence);
    if (viewer.complain)
        viewer.complain(sentence);
}

// For what nobody waits for an answer to.
void ContainerApp::attempt(std::function<void()> const& task) {
    try {
        task();
    } catch (DatabaseError const& error) {
        complain(error.what());
    }
}

void ContainerApp::refresh() {
    if (!viewer.show || refreshTimer.isPending())
        return;
    refreshTimer.start(refreshDelay, [this] {
        auto const begunAt = Clock::now();
        attempt([this] { viewer.show(readWindowContent(*store, shown)); });
        auto const cost = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begunAt);
        refreshDelay = std::max<std::chrono::milliseconds>(shortestRefreshDelay, refreshShare * cost);
    });
}

void ContainerApp::quit(ExitCode theCode) {
    code = theCode;
    g_main_loop_quit(loop.get());
}

} // namespace workbench
