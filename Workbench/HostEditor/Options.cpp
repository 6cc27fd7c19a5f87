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
        return result;
    }

private:
    void take(std::string const& argument) {
        if (onlyFiles || !argument.starts_with('-') || argument == "-")
            result.options.files.push_back(argument);
        else if (argument == "--")
            onlyFiles = true;
        else if (argument == "--panel" || argument.starts_with("--panel="))
            takePanel(argument);
        else if (!takeSwitch(argument))
            refuse("unknown option " + argument);
    }

    void takePanel(std::string const& argument) {
        constexpr std::string_view prefix = "--panel=";
        auto& module = result.options.panelModule;
        if (argument.starts_with(prefix)) {
            module = argument.substr(prefix.size());
        } else if (!rest.empty()) {
            module = rest.front();
            rest = rest.subspan(1);
        }
        if (module.empty())
            refuse("--panel needs a file");
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
  --help             show this text and leave
  --version          show the version and leave

Keys: Control+o opens files, space plays and pauses, l and j play on and back, faster
with each press, k pauses, left and right step one frame, up and down go from comment
to comment, home and end to the first and the last frame, t or a digit takes a
timecode, + and - and f magnify the timeline and show all of it.

Exit status: 0 when the window was closed, 1 when it could not be opened, 2 when the
command line was not understood.
)";
}

} // namespace workbench
