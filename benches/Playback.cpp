// Whether the editor plays in real time, and what that costs: pictures painted in a second, frames that the
// engine dropped, processor time, alone and with the panel following. The floors were reached by a bare
// player of the same engine on two shared cores of 2.5 GHz without a graphics processor.

#include "benches/Harness/ProcessFigures.h"
#include "benches/Harness/Program.h"
#include "benches/Harness/SideProcess.h"
#include "benches/Harness/TemporaryFolder.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace {

using namespace fcp;
using namespace fcp::bench;

struct Clip {
    int height;
    int rateNumerator;
    int rateDenominator;
};

struct Row {
    std::string name;
    Clip clip;
    int windowHeight; // leaves the picture 540 or 360 rows
    bool withPanel;
    double painted; // floors: pictures in a second, per cent of one core
    double processor;
};

std::vector<Row> const rows = {
    {"1080p 23.976 to 960x540", {1080, 24000, 1001}, 860, false, 23.7, 75},
    {"1080p 25 to 960x540", {1080, 25, 1}, 860, false, 25, 89},
    {"1080p 29.97 to 960x540", {1080, 30000, 1001}, 860, false, 29.97, 89},
    {"720p 25 to 640x360", {720, 25, 1}, 542, false, 25, 46},
    {"720p 59.94", {720, 60000, 1001}, 860, false, 43, 119},
    {"1080p 23.976 to 960x540 with panel", {1080, 24000, 1001}, 860, true, 23.8, 124},
    {"1080p 25 to 960x540 with panel", {1080, 25, 1}, 860, true, 25, 124},
    {"1080p 29.97 to 960x540 with panel", {1080, 30000, 1001}, 860, true, 29.97, 155},
};

struct Play {
    double painted = 0; // in a second
    int dropped = 0;
    double processor = 0; // of the editor, per cent of one core
    double web = 0; // of the panel's page
};

void mustRun(std::string const& command) {
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error("failed: " + command);
}

std::string makeFilm(TemporaryFolder const& folder, Clip const& clip, int seconds) {
    auto const rate = std::to_string(clip.rateNumerator) + "/" + std::to_string(clip.rateDenominator);
    auto const size = std::to_string(clip.height * 16 / 9) + "x" + std::to_string(clip.height);
    auto file = folder / ("film-" + size + "-" + std::to_string(clip.rateNumerator) + ".mp4");
    if (!std::filesystem::exists(file))
        mustRun("ffmpeg -hide_banner -loglevel error -nostdin -f lavfi -i testsrc2=s=" + size + ":r=" + rate +
                " -f lavfi -i sine=f=440:r=48000 -t " + std::to_string(seconds) +
                " -c:v libx264 -preset veryfast -g 48 -pix_fmt yuv420p -c:a aac " + file.string());
    return file;
}

// The editor finds its window as this leaves it.
void shapeWindow(TemporaryFolder const& folder, int height) {
    auto const place = folder / "zelvix";
    std::filesystem::create_directories(place);
    std::ofstream{place / "workbench.ini"} << "[window]\nwidth=1280\nheight=" << height << "\npanel=300\n";
    setenv("XDG_STATE_HOME", folder.path().c_str(), 1);
}

std::string readUntil(SideProcess& editor, std::string const& text) {
    for (;;)
        if (auto line = editor.readLine(); line.find(text) != std::string::npos)
            return line;
}

double webTime(pid_t editor) {
    double sum = 0;
    for (auto const process : webProcesses(editor))
        sum += processorTime(process);
    return sum;
}

// Who still draws, or loads the page, uses the processors. Both have drawn everything when they have left
// them alone for longer than the half second after which the panel tells its page once more that it is
// connected.
void waitForRest(pid_t editor) {
    constexpr auto look = std::chrono::milliseconds(100);
    constexpr auto looksAtRest = 8;
    constexpr double atRest = 5; // milliseconds of processor in a look
    auto const deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    auto before = processorTime(editor) + webTime(editor);
    for (int quiet = 0; quiet < looksAtRest;) {
        if (std::chrono::steady_clock::now() > deadline)
            throw std::runtime_error("the editor does not come to rest");
        std::this_thread::sleep_for(look);
        auto const used = processorTime(editor) + webTime(editor);
        quiet = used - before < atRest ? quiet + 1 : 0;
        before = used;
    }
}

Play play(TemporaryFolder const& folder, Row const& row, int seconds) {
    auto const film = makeFilm(folder, row.clip, seconds);
    shapeWindow(folder, row.windowHeight);
    std::vector<std::string> arguments{"--panel",        "none",         "--no-page",
                                       "--no-container", "--production", film};
    if (row.withPanel)
        arguments = {film};
    SideProcess editor("zelvix-workbench", arguments, SideProcess::Pipes::Both);
    readUntil(editor, row.withPanel ? "page connected, container connected" : "window shown");
    waitForRest(editor.pid());
    auto const processorBefore = processorTime(editor.pid());
    auto const webBefore = webTime(editor.pid());
    mustRun("xdotool key space");
    auto const line = readUntil(editor, "played ");
    auto const perCent = 100 / (seconds * 1000.0);
    Play result{.processor = (processorTime(editor.pid()) - processorBefore) * perCent,
                .web = (webTime(editor.pid()) - webBefore) * perCent};
    double span = 0;
    int painted = 0;
    if (std::sscanf(line.c_str() + line.find("played "),
                    "played %lf s at 1x: %d pictures painted, %d dropped", &span, &painted,
                    &result.dropped) != 3)
        throw std::runtime_error("not what the editor says of a stretch of play: " + line);
    // It notices the end a little late; who plays too slowly is held to the time that it took.
    constexpr double atTheEnd = 0.6;
    result.painted = painted / std::max<double>(seconds, span - atTheEnd);
    return result;
}

void measureRow(TemporaryFolder const& folder, Row const& row, Options const& options, Report& report) {
    auto const seconds = options.count(12, 2);
    Comparison painted("painted, " + row.name, " pictures/s", 1, {Bound::Kind::AtLeast, 0.98});
    Comparison processor("processor, " + row.name, "%", 0, {Bound::Kind::AtMost, 1.1});
    int dropped = 0;
    std::vector<double> web;
    for (int round = 0; round < options.rounds; ++round) {
        auto const result = play(folder, row, seconds);
        painted.add(result.painted, row.painted);
        processor.add(result.processor, row.processor);
        dropped += result.dropped;
        web.push_back(result.web);
    }
    painted.addRemark(std::to_string(dropped) + " dropped");
    if (row.withPanel)
        processor.addRemark("the page " + std::to_string(static_cast<int>(median(web))) + "%");
    report.print(painted);
    report.print(processor);
}

void measure(Options const& options, Report& report) {
    TemporaryFolder const folder;
    for (auto const& row : rows)
        // The quick form leaves alone what belongs to the whole machine: the page's port, the marker file.
        if (!options.quick || row.windowHeight < 600)
            measureRow(folder, row, options, report);
}

} // namespace

int main(int argc, char** argv) {
    auto const options = readOptions(argc, argv, "whether the editor plays in real time", 3);
    return runProgram(options, [&options](Report& report) { measure(options, report); });
}
