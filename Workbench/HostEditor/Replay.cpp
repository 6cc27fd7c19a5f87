#include "Workbench/HostEditor/Replay.h"

#include "Workbench/HostEditor/Editor.h"
#include "Workbench/HostEditor/TimeToFrame.h"

#include <glibmm/main.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>
#include <utility>

namespace workbench {

namespace {

using nlohmann::json;

std::string shortened(json const& value) {
    constexpr std::size_t longest = 400;
    auto text = value.dump(-1, ' ', true, json::error_handler_t::replace);
    return text.size() > longest ? text.substr(0, longest) + "..." : text;
}

std::string textOf(json const& difference) {
    auto const found = difference.contains("found") ? shortened(difference["found"]) : "nothing in time";
    auto const about = difference.value("about", json());
    return "line " + shortened(difference.value("line", json())) +
           " goes otherwise: " + (about.is_string() ? about.get<std::string>() : shortened(about)) +
           ": recorded " + shortened(difference.value("recorded", json())) + ", found " + found;
}

ReplayOutcome outcomeOf(json const& report) {
    if (!report.is_object())
        return {false, "the page's report cannot be read"};
    if (report.contains("problem"))
        return {false, "the page cannot play it back: " + shortened(report["problem"])};
    auto const difference = report.value("difference", json());
    if (difference.is_object())
        return {false, textOf(difference)};
    return {true,
            "all of " + shortened(report.value("compared", json(0))) + " answers and events are as recorded"};
}

// The page knows a sequence by what the panel tells of it, which is no key: the names of two may be the same.
bool isMeant(SequenceFacts const& sequence, json const& told) {
    auto const duration = told.value("duration", json());
    constexpr double tolerance = 0.001; // seconds
    auto const length =
        static_cast<double>(sequence.length) * sequence.rate.denominator / sequence.rate.numerator;
    return told.value("name", json()) == sequence.name && duration.is_number() &&
           std::abs(length - duration.get<double>()) < tolerance;
}

std::vector<std::string> textsIn(json const& list) {
    std::vector<std::string> texts;
    for (auto const& each : list)
        if (each.is_string())
            texts.push_back(each.get<std::string>());
    return texts;
}

} // namespace

std::variant<ReadRecording, std::string> readRecording(std::filesystem::path const& file) {
    std::ifstream in{file, std::ios::binary};
    std::ostringstream text;
    if (!(text << in.rdbuf()))
        return "cannot read the recording " + file.string() + ": it is missing, empty or closed to this user";
    ReadRecording read{text.str(), {}};
    std::istringstream lines{read.text};
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        auto const parsed = json::parse(line, nullptr, false);
        if (!parsed.is_object() || !parsed.contains("by"))
            return file.string() + " is no recording: its line " + std::to_string(number) +
                   " is no JSON object with \"by\"";
        if (parsed.contains("files"))
            read.files = textsIn(parsed["files"]);
    }
    return read;
}

Replay::Replay(Editor& shownEditor, std::string recorded, Ended whenEnded, unsigned patienceMilliseconds)
    : editor(shownEditor)
    , lines(std::move(recorded))
    , ended(std::move(whenEnded)) {
    auto const giveUp = [this] {
        ended({false, "no page has asked for the recording: the panel has not loaded it"});
        return false;
    };
    silence = Glib::signal_timeout().connect(giveUp, patienceMilliseconds);
}

Replay::~Replay() {
    silence.disconnect();
}

std::string const& Replay::recording() {
    silence.disconnect();
    return lines;
}

void Replay::movePlayhead(double seconds) {
    auto const* const sequence = editor.activeSequence();
    if (!sequence)
        return;
    if (auto const frame = frameAt(timeOfSeconds(seconds), sequence->rate, sequence->length))
        editor.seek(*frame);
}

void Replay::activate(std::string const& sequence) {
    auto const told = json::parse(sequence, nullptr, false);
    auto const all = editor.sequences();
    auto const meant = std::ranges::find_if(
        all, [&told](auto const& one) { return told.is_object() && isMeant(one, told); });
    if (meant != all.end())
        editor.activate(static_cast<std::size_t>(meant - all.begin()));
}

void Replay::report(std::string const& outcome) {
    ended(outcomeOf(json::parse(outcome, nullptr, false)));
}

} // namespace workbench
