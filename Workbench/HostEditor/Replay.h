#pragma once

#include "Workbench/ReviewPage/SessionDesk.h"

#include <sigc++/connection.h>

#include <filesystem>
#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace workbench {

class Editor;

// A recording as text, and the files that were open in it.
struct ReadRecording {
    std::string text;
    std::vector<std::string> files;
};

// Or what is wrong, in one line that names the file.
[[nodiscard]] std::variant<ReadRecording, std::string> readRecording(std::filesystem::path const& file);

struct ReplayOutcome {
    bool isAsRecorded = false;
    std::string line; // for people
};

// The workbench's side of a replay: the page plays its own messages back, and has the user's moves made again
// here. Main thread.
class Replay final : public ReplayDesk {
public:
    using Ended = std::function<void(ReplayOutcome const& outcome)>;

    // The editor outlives the replay. It is over, too, when no page has asked for the recording in that time.
    Replay(Editor& shownEditor, std::string recorded, Ended whenEnded,
           unsigned patienceMilliseconds = 60'000);
    ~Replay() override;

    [[nodiscard]] std::string const& recording() override;
    void movePlayhead(double seconds) override;
    void activate(std::string const& sequence) override;
    void report(std::string const& outcome) override;

private:
    Editor& editor;
    std::string lines;
    Ended ended;
    sigc::connection silence; // until the page asks
};

} // namespace workbench
