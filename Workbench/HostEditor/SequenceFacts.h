#pragma once

#include "Workbench/HostEditor/TimeToFrame.h"

#include <cstdint>
#include <string>
#include <vector>

namespace workbench {

// A note that a project brought along; it is shown, never changed.
struct Mark {
    std::int64_t frame = 0;
    std::int64_t length = 0; // in frames; 0 marks a moment
    std::string text;

    friend bool operator==(Mark const&, Mark const&) = default;
};

// What the rest of the program, the panel and the container know of a sequence: values, free to be copied
// to other threads.
struct SequenceFacts {
    std::string key; // the file's URI, and the sequence's own identifier after '#' where a file holds several
    std::string uri;
    std::string name;
    FrameRate rate;
    std::int64_t length = 0; // in frames
    double displayAspect = 16.0 / 9.0;
    bool hasPicture = true;
    std::vector<Mark> marks;
};

} // namespace workbench
