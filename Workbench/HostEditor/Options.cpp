#include "Workbench/HostEditor/Options.h"

#include <span>
#include <string_view>

namespace workbench {

namespace {

// Reads one argument after the other; it ends at the first that settles the matter.
class Reader {
public:
    explicit Reader(std::span<std::string const> arguments)
        : rest(arguments) {}

    CommandLine read() {
        while (!rest.empty() && result.request == Request::Run) {
            auto const& argument = rest.front();
            rest = rest.subspan(1);
            take(argument);
        }
        checkSession();
        return result;
    }

private:
    void take(std::string const& argument) {
        if (onlyFiles || !argument.starts_with('-') || argument == "-")
            result.options.files.push_back(argument);
        else if (argument == "--")
            onlyFiles = true;
        else if (!takeFile(argument) && !takeSwitch(argument))
            refuse("unknown option " + argument);
    }

    // Whether it is one of the options with a file, in either spelling.
    bool takeFile(std::string const& argument) {
        auto const name = argument.substr(0, argument.find('='));
        auto* const file = placeOf(name);
        if (!file)
            return false;
        if (argument.size() > name.size()) {
            *file = argument.substr(name.size() + 1);
        } else if (!rest.empty()) {
            *file = rest.front();
            rest = rest.subspan(1);
        }
        if (file->empty())
            refuse(name + " needs a file");
        return true;
    }

    std::string* placeOf(std::string_view name) {
        auto& options = result.options;
        if (name == "--panel")
            return &options.panelModule;
        if (name == "--record")
            return &options.recordTo;
        return name == "--replay" ? &options.replayFrom : nullptr;
    }

    bool takeSwitch(std::string_view argument) {
        auto& options = result.options;
        if (argument == "--production")
            options.production = true;
        else if (argument == "--no-page")
            options.servesPage = false;
        else if (argument == "--no-container")
            options.startsContainer = false;
        else if (argument == "--observer-thread")
            options.observerThread = true;
        else
            return takeQuestion(argument);
        return true;
    }

    bool takeQuestion(std::string_view argument) {
        if (argument == "--help" || argument == "-h")
            result.request = Request::ShowHelp;
        else if (argument == "--version")
            result.request = Request::ShowVersion;
        else
            return false;
        return true;
    }

    void checkSession() {
        auto const& options = result.options;
        if (result.request != Request::Run || (options.recordTo.empty() && options.replayFrom.empty()))
            return;
        if (!options.recordTo.empty() && !options.replayFrom.empty())
            refuse("--record and --replay exclude each other");
        else if (!options.servesPage || options.production)
            refuse("--record and --replay need the page that is served here, so neither --no-page nor "
                   "--production");
    }

    void refuse(std::string problem) {
        result.request = Request::Refuse;
        result.problem = std::move(problem);
    }

    std::span<std::string const> rest;
    CommandLine result;
    bool onlyFiles = false;
};

} // namespace

CommandLine parseCommandLine(std::vector<std::string> const& arguments) {
    return Reader{arguments}.read();
}

std::string helpText() {
    return R"(Usage: zelvix-workbench [OPTION]... [FILE]...

A small editor with the review panel beside it. FILE is a video, a still, a sound
file, or a project (.mlt, .kdenlive); each one adds a sequence or more.

  --panel FILE       the panel's module (default: libfcp-extension.so beside this
                     program, or where it is installed)
  --no-page          serve no review page; load whatever answers on port 3000
  --no-container     start no container application
  --production       leave the panel's marker files alone
  --observer-thread  notify the panel from a thread of its own
  --record FILE      write down what page, panel, editor and container say, as JSON
                     lines: what a report of a fault needs
  --replay FILE      play the page's side of such a file back, with the files that
                     were open then, and tell the first thing that goes otherwise
  --help             show this text and leave
  --version          show the version and leave

Keys: Control+o opens files, space plays and pauses, l and j play on and back, faster
with each press, k pauses, left and right step one frame, up and down go from comment
to comment, home and end to the first and the last frame, t or a digit takes a
timecode, + and - and f magnify the timeline and show all of it.

Exit status: 0 when the window was closed, or a replay went as it was recorded, 1 when
the window could not be opened, a recording not begun, or a replay went otherwise, 2
when the command line was not understood.
)";
}

} // namespace workbench
