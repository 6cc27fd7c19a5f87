#pragma once

#include "Workbench/ContainerApp/BusPresence.h"
#include "Workbench/ContainerApp/CommandHandler.h"
#include "Workbench/ContainerApp/Console.h"
#include "Workbench/ContainerApp/ExportDesk.h"
#include "Workbench/ContainerApp/FolderChooser.h"
#include "Workbench/ContainerApp/LinkOpener.h"
#include "Workbench/ContainerApp/Options.h"
#include "Workbench/ContainerApp/Timer.h"
#include "Workbench/ContainerApp/WindowContent.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

using GMainLoop = struct _GMainLoop;

namespace workbench {

// The program without its window: starts, answers, survives a lost bus, and ends in order. Main thread only.
class ContainerApp {
public:
    // What shows the state to a person.
    struct Viewer {
        std::function<void(WindowContent const&)> show;
        std::function<void(std::string const& sentence)> complain;
        FolderChooser::Dialog chooseFolder;
        std::function<void(std::string const& sentence)> tell;
        // From 0 to 1 while an export runs, else none.
        std::function<void(std::optional<double>)> progress;
    };

    ContainerApp(ContainerOptions options, Console const& console);
    ~ContainerApp();

    ContainerApp(ContainerApp const&) = delete;
    ContainerApp& operator=(ContainerApp const&) = delete;

    // Takes the place on the bus and opens the store. Anything but Done has been said on standard error.
    [[nodiscard]] ExitCode start();

    // Before `run`.
    void setViewer(Viewer theViewer);

    // Answers commands until it is told to end.
    [[nodiscard]] ExitCode run();

    // What a person asks for in the window. The sequence that is shown is the active one unless another one
    // was asked for.
    void showSequence(std::string const& key);
    void startExport(std::string const& format);
    void cancelExport();
    void chooseFolder();
    void import(std::string const& file);

    // Brings what runs to its end, then ends `run`.
    void requestEnd();

private:
    struct Work;

    struct UnrefLoop {
        void operator()(GMainLoop* ended) const;
    };

    [[nodiscard]] ExitCode openStore();
    void makeWork();
    [[nodiscard]] std::unique_ptr<BusPresence> makePresence();
    void announce();
    void activeSequenceChanged(std::optional<HostSequence> const& sequence);
    [[nodiscard]] std::string importFile(std::string const& file, std::string const& sequenceKey);
    void importAndEnd();
    [[nodiscard]] std::string shownKey();
    void showProgress();
    void exportChanged(ExportState state, std::string const& message);
    void busLost();
    void reconnect(std::chrono::milliseconds next);
    void attempt(std::function<void()> const& task);
    void complain(std::string const& sentence);
    void refresh();
    void quit(ExitCode code);

    using Clock = std::chrono::steady_clock;

    Clock::time_point const begun = Clock::now();
    ContainerOptions options;
    Console const& console;
    Viewer viewer;
    std::string shown; // the sequence that a person asked for; empty: the active one
    std::unique_ptr<GMainLoop, UnrefLoop> loop;
    std::unique_ptr<Store> store;
    std::unique_ptr<BusPresence> presence;
    std::unique_ptr<Work> work; // goes first: what it owes is still answered
    Timer idleTimer;
    Timer refreshTimer;
    Timer progressTimer;
    Timer reconnectTimer;
    Timer patienceTimer;
    std::chrono::milliseconds refreshDelay{0};
    Clock::time_point lostAt;
    Clock::time_point exportBegunAt;
    bool ending = false;
    ExitCode code = ExitCode::Done;
};

} // namespace workbench
