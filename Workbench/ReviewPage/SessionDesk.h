#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace workbench {

// Takes what the served page writes down of a run. Main thread.
class RecordingDesk {
public:
    RecordingDesk() = default;
    virtual ~RecordingDesk() = default;
    RecordingDesk(RecordingDesk const&) = delete;
    RecordingDesk& operator=(RecordingDesk const&) = delete;

    // When the recording began, in milliseconds since 1970: the page counts from there.
    [[nodiscard]] virtual std::int64_t began() const = 0;

    // What the page has said and heard, as JSON lines.
    virtual void keep(std::string const& lines) = 0;
};

// Has a recording, and does in the editor what the page that plays it back asks for. Main thread.
class ReplayDesk {
public:
    ReplayDesk() = default;
    virtual ~ReplayDesk() = default;
    ReplayDesk(ReplayDesk const&) = delete;
    ReplayDesk& operator=(ReplayDesk const&) = delete;

    // The page asks for it once, at its start.
    [[nodiscard]] virtual std::string const& recording() = 0;

    virtual void movePlayhead(double seconds) = 0;

    // The sequence as the panel told it to the page, as JSON.
    virtual void activate(std::string const& sequence) = 0;

    // The end: {"compared":COUNT,"difference":{...}} without the latter where all went well, or
    // {"problem":TEXT}.
    virtual void report(std::string const& outcome) = 0;
};

// Null pointers are not among the values.
using SessionDesk = std::variant<std::monostate, RecordingDesk*, ReplayDesk*>;

} // namespace workbench
