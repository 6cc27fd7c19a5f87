#pragma once

#include "Workbench/HostEditor/SequenceFacts.h"
#include "Workbench/ReviewPage/SessionDesk.h"

#include <glibmm/variant.h>
#include <nlohmann/json_fwd.hpp>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace workbench {

// Writes a run down as JSON lines: what page and panel say to each other (the page's own lines), which files
// are open, which sequence is active, where the playhead is, and what crosses the container's channel. Each
// line has "at", the milliseconds since the recording began, and "by". The page's lines come a little after
// others of their time. A line is in the file when the call returns. Main thread.
class Recording final : public RecordingDesk {
public:
    using Complain = std::function<void(std::string const& line)>;

    // Or what is wrong, in one line that names the file: a file that holds something is left alone.
    // `complain` hears of it, once, when later on nothing can be written any more.
    [[nodiscard]] static std::variant<std::unique_ptr<Recording>, std::string>
    begin(std::filesystem::path const& file, Complain complain);

    void filesOpened(std::vector<std::string> const& files);
    void sequenceChanged(std::optional<SequenceFacts> const& sequence);
    void playheadMoved(std::int64_t frame);
    void channelSaid(std::string const& member, Glib::VariantContainerBase const& arguments);

    [[nodiscard]] std::int64_t began() const override;
    void keep(std::string const& lines) override;

private:
    Recording(std::filesystem::path file, std::ofstream opened, Complain complain);
    void add(nlohmann::json line);
    void write(std::string const& lines);

    std::filesystem::path path;
    std::ofstream out;
    Complain tell;
    std::chrono::system_clock::time_point start;
};

} // namespace workbench
