#include "Workbench/ContainerApp/ContainerApp.h"
#include "Workbench/ContainerApp/FileDialog.h"
#include "Workbench/ContainerApp/FolderDialog.h"
#include "Workbench/ContainerApp/ImportService.h"
#include "Workbench/ContainerApp/MainWindow.h"

#include <glib.h>

#include <cstdio>
#include <exception>
#include <optional>

using namespace workbench;

namespace {

// The window and what hangs from it.
struct Desktop {
    explicit Desktop(ContainerApp& app)
        : window{{.close = [&app] { app.requestEnd(); },
                  .showSequence = [&app](std::string const& key) { app.showSequence(key); },
                  .startExport = [&app](std::string const& format) { app.startExport(format); },
                  .cancelExport = [&app] { app.cancelExport(); },
                  .changeFolder = [&app] { app.chooseFolder(); },
                  .import = [this,
                             &app] { files.open([&app](std::string const& file) { app.import(file); }); }}}
        , folders{window}
        , files{window} {
        app.setViewer(
            {.show = [this](WindowContent const& content) { window.showContent(content); },
             .complain = [this](std::string const& sentence) { window.showProblem(sentence); },
             .chooseFolder =
                 [this](std::string const& folder, FolderChooser::Chosen chosen) {
                     folders.open(folder, std::move(chosen));
                 },
             .tell = [this](std::string const& sentence) { window.showNews(sentence); },
             .progress = [this](std::optional<double> progress) { window.showProgress(progress); }});
        window.show();
    }

    MainWindow window;
    FolderDialog folders;
    FileDialog files;
};

// By the one that is running; none when there is none.
std::optional<ExitCode> importElsewhere(ContainerOptions const& options, Console const& console) {
    auto sentence = std::string{};
    auto const answer = askToImport(options.importFile, options.sequence, sentence);
    if (answer == ImportAnswer::Nobody)
        return {};
    if (answer == ImportAnswer::Imported)
        console.say(sentence);
    else
        console.complain(sentence);
    return answer == ImportAnswer::Imported ? ExitCode::Done : ExitCode::NotImported;
}

ExitCode run(ContainerOptions const& options) {
    auto const console = Console{options.verbose ? Console::Detail::Verbose : Console::Detail::Quiet};
    auto const isImport = !options.importFile.empty();
    if (auto const code = isImport ? importElsewhere(options, console) : std::nullopt)
        return *code;
    auto desktop = std::optional<Desktop>{};
    auto app = ContainerApp{options, console};
    if (auto const code = app.start(); code != ExitCode::Done)
        return code;
    if (options.window && !isImport && startToolkit())
        desktop.emplace(app);
    else if (options.window && !isImport)
        console.complain("there is no display; running without a window");
    return app.run();
}

} // namespace

int main(int count, char** arguments) {
    g_set_prgname("zelvix-container");
    auto problem = std::string{};
    auto const options = readOptions({arguments + 1, arguments + count}, problem);
    if (!options) {
        std::fprintf(stderr, "zelvix-container: %s\n%s", problem.c_str(), helpText().c_str());
        return static_cast<int>(ExitCode::WrongUsage);
    }
    if (options->action != ContainerOptions::Action::Run) {
        auto const isHelp = options->action == ContainerOptions::Action::Help;
        std::fputs(isHelp ? helpText().c_str() : "zelvix-container " ZELVIX_VERSION "\n", stdout);
        return 0;
    }
    try {
        return static_cast<int>(run(*options));
    } catch (std::exception const& error) {
        std::fprintf(stderr, "zelvix-container: %s\n", error.what());
        return static_cast<int>(ExitCode::Failed);
    }
}
