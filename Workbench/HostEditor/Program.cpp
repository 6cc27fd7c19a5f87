#include "Workbench/HostEditor/Program.h"

#include "Workbench/HostEditor/ContainerLauncher.h"
#include "Workbench/HostEditor/DevelopmentMarker.h"
#include "Workbench/HostEditor/Editor.h"
#include "Workbench/HostEditor/EditorService.h"
#include "Workbench/HostEditor/EditorWindow.h"
#include "Workbench/HostEditor/HostSymbol.h"
#include "Workbench/HostEditor/Journal.h"
#include "Workbench/HostEditor/MediaEngine.h"
#include "Workbench/HostEditor/PanelModule.h"
#include "Workbench/HostEditor/PanelWatch.h"
#include "Workbench/HostEditor/PinsClient.h"
#include "Workbench/HostEditor/PlayTally.h"
#include "Workbench/HostEditor/ProgramFolder.h"
#include "Workbench/HostEditor/RunSession.h"
#include "Workbench/HostEditor/SessionBus.h"
#include "Workbench/HostEditor/SignalWatch.h"
#include "Workbench/HostEditor/Style.h"
#include "Workbench/ReviewPage/PageServer.h"
#include "Workbench/ReviewPage/PageServerControl.h"

#include <glibmm/main.h>
#include <glibmm/miscutils.h>
#include <gtkmm/init.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace workbench {

namespace {

// Without a graphics processor the toolkit's own choice is a slower imitation of one.
void chooseRenderer() {
    std::error_code error;
    if (!std::filesystem::exists("/dev/dri", error))
        setenv("GSK_RENDERER", "cairo", 0);
}

std::optional<SequenceFacts> activeFacts(Editor const& editor) {
    auto const* const sequence = editor.activeSequence();
    return sequence ? std::optional{*sequence} : std::nullopt;
}

// The parts in the order in which they are made; they go in the opposite one.
class Program final {
public:
    Program(Options const& chosen, Journal const& toTell, DevelopmentMarker const& made)
        : options(chosen)
        , journal(toTell)
        , marker(made)
        , loop(Glib::MainLoop::create())
        , signals([this](int number) { endBySignal(number); })
        , editor(journal)
        , service(bus)
        , pins(PinsClient::create(bus))
        , host(publishHost(options.observerThread ? HostBridge::Delivery::OwnThread
                                                  : HostBridge::Delivery::MainThread)) {}

    // Answers the exit status.
    int run() {
        for (auto const& message : marker.messages())
            journal.warn(message);
        if (!session.begin(options))
            return EXIT_FAILURE;
        connectParts();
        editor.open(options.files.empty() ? session.recordedFiles() : options.files);
        startPage();
        if (strangerAtPort && session.isReplay())
            return EXIT_FAILURE;
        startContainer();
        showWindow();
        loop->run();
        endQuietly();
        return session.isReplay() && !isAsRecorded ? EXIT_FAILURE : EXIT_SUCCESS;
    }

private:
    void endBySignal(int number) {
        journal.say("ended by signal " + std::to_string(number));
        loop->quit();
    }

    void endReplay(ReplayOutcome const& outcome) {
        auto const line = "replay: " + outcome.line;
        isAsRecorded = outcome.isAsRecorded;
        if (isAsRecorded)
            journal.say(line);
        else
            journal.warn(line);
        loop->quit();
    }

    void connectParts() {
        host.onMove([this](std::int64_t frame) { editor.seek(frame); });
        editor.signalActiveChanged().connect([this] { tellActive(); });
        editor.signalPositionChanged().connect([this] { host.setFrame(editor.position()); });
        editor.signalPlayingChanged().connect([this] { tellPlay(); });
        pins->signalChanged().connect([this] {
            if (window)
                window->showPins(pins->pins(), pins->isLive());
            showConnections();
        });
        host.onObserved([this] { showConnections(); });
        panelWatch.signalChanged().connect([this] { showConnections(); });
    }

    // Each stretch of play in one line, also where only the speed changes.
    void tellPlay() {
        if (!window)
            return;
        PlayCounts const counts{window->paintedPictures(), editor.dropped()};
        if (tally)
            journal.say(tally->text(counts));
        tally.reset();
        if (editor.isPlaying())
            tally.emplace(editor.speed(), counts);
    }

    void showConnections() {
        Connections const now{host.isObserved(), panelWatch.pageSpeaks(), pins->isLive()};
        if (!window || now == connections)
            return;
        connections = now;
        window->showConnections(connections);
        journal.say(summary(connections));
    }

    void tellActive() {
        auto const facts = activeFacts(editor);
        service.setActiveSequence(facts);
        pins->follow(facts ? facts->key : std::string{});
        host.setActive(facts, editor.position());
    }

    void startPage() {
        // The published page needs no server, unless somebody else's marker calls for the local one.
        if (!options.servesPage || !marker.isPresent())
            return;
        Stopwatch const watch;
        page = std::make_unique<PageServer>(PageServer::PanelPort, session.desk());
        strangerAtPort = page->start();
        if (strangerAtPort) {
            journal.warn(*strangerAtPort);
            return;
        }
        journal.say("review page served at " + page->pageURL() + ", in " + watch.text());
        pageControl = std::make_unique<PageServerControl>(*page);
    }

    void startContainer() {
        if (options.startsContainer)
            launcher.emplace(bus, journal, programFolder() / "zelvix-container");
    }

    void showWindow() {
        installStyle();
        auto const earlier = readWindowState(windowStateFile());
        if (!earlier.problem.empty())
            journal.warn(earlier.problem);
        window = std::make_unique<EditorWindow>(editor, earlier.state);
        window->showPins(pins->pins(), pins->isLive());
        auto const endWithWindow = [this] {
            loop->quit();
            return true; // it goes with everything else
        };
        window->signal_close_request().connect(endWithWindow, false);
        window->present();
        journal.say("window shown");
        showConnections();
        // After the first picture: the panel's engine takes a while to load.
        Glib::signal_idle().connect_once([this] {
            if (session.isReplay() && options.startsContainer)
                loadPanelWithContainer();
            else
                loadPanel();
        });
    }

    // A message that is played back before the container is there would be lost.
    void loadPanelWithContainer() {
        constexpr unsigned patience = 10; // seconds; the page then tells what is missing
        loading = Glib::signal_timeout().connect_seconds(
            [this] {
                loadPanel();
                return false;
            },
            patience);
        pins->signalChanged().connect([this] {
            if (!pins->isLive() || !loading.connected())
                return;
            loading.disconnect();
            loadPanel();
        });
    }

    void loadPanel() {
        if (strangerAtPort) {
            window->panel().say("The panel is not loaded", *strangerAtPort);
            return;
        }
        Stopwatch const watch;
        std::filesystem::path const module =
            options.panelModule.empty() ? defaultPanelModule() : std::filesystem::path{options.panelModule};
        auto const made = makePanel(module);
        if (auto const* const reason = std::get_if<std::string>(&made)) {
            journal.warn("no panel: " + *reason);
            window->panel().say("There is no panel", *reason);
            return;
        }
        window->panel().hold(std::get<GtkWidget*>(made));
        panelWatch.follow(std::get<GtkWidget*>(made));
        journal.say("panel loaded from " + module.string() + " in " + watch.text());
    }

    void endQuietly() {
        if (auto const problem = writeWindowState(windowStateFile(), window->state()); !problem.empty())
            journal.warn(problem);
        window.reset();
        host.close();
        editor.deactivate();
    }

    Options const& options;
    Journal const& journal;
    DevelopmentMarker const& marker;
    Glib::RefPtr<Glib::MainLoop> loop;
    SignalWatch signals;
    MediaEngine engine;
    Editor editor;
    SessionBus bus;
    EditorService service;
    std::shared_ptr<PinsClient> pins;
    HostBridge& host;
    RunSession session{editor, bus, journal, [this](ReplayOutcome const& outcome) { endReplay(outcome); }};
    bool isAsRecorded = false; // a replay, once the page has said so
    sigc::connection loading; // of the panel, where it waits for the container
    std::optional<std::string> strangerAtPort; // the page server's complaint
    std::unique_ptr<PageServer> page;
    std::unique_ptr<PageServerControl> pageControl;
    std::optional<ContainerLauncher> launcher;
    std::unique_ptr<EditorWindow> window;
    PanelWatch panelWatch;
    Connections connections; // as they are shown
    std::optional<PlayTally> tally; // while it plays
};

} // namespace

int runWorkbench(Options const& options) {
    Journal const journal;
    using Use = DevelopmentMarker::Use;
    DevelopmentMarker const marker{options.production ? Use::LeaveAlone : Use::Select, {}};
    chooseRenderer();
    outliveSessionBus();
    if (!gtk_init_check()) {
        journal.warn("there is no display to show a window on");
        return EXIT_FAILURE;
    }
    Gtk::init_gtkmm_internals();
    // Both go into the desktop's list of recent files.
    Glib::set_prgname("zelvix-workbench");
    Glib::set_application_name("Zelvix Workbench");
    auto const status = Program{options, journal, marker}.run();
    journal.say("ended");
    return status;
}

} // namespace workbench
