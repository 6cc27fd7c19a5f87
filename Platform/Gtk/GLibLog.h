#pragma once

#include "Ports/Log.h"

#include <glib.h>

#include <optional>

namespace fcp {

// Writes lines to GLib's structured log: the subsystem is the domain, so that debug and info lines show when
// G_MESSAGES_DEBUG names it, and the category is the field CATEGORY. Any thread.
class GLibLog final : public Log {
public:
    // The process's default log: no domain, no category.
    GLibLog() = default;

    GLibLog(std::string const& subsystem, std::string const& category);

    void debug(std::string const& line) override;
    void info(std::string const& line) override;

    // A message of GLib's with the journal's priority of an error. GLib's own warnings and errors end a
    // process that was told to take them as fatal, and nothing that is logged here is worth that.
    void error(std::string const& line) override;

private:
    struct Origin {
        std::string domain;
        std::string category;
    };

    void write(GLogLevelFlags level, char const* priority, std::string const& line) const;

    std::optional<Origin> const origin;
};

} // namespace fcp
