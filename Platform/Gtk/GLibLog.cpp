#include "Platform/Gtk/GLibLog.h"

#include <vector>

namespace fcp {

GLibLog::GLibLog(std::string const& subsystem, std::string const& category)
    : origin(Origin{subsystem, category}) {}

void GLibLog::debug(std::string const& line) {
    write(G_LOG_LEVEL_DEBUG, "7", line);
}

void GLibLog::info(std::string const& line) {
    write(G_LOG_LEVEL_INFO, "6", line);
}

void GLibLog::error(std::string const& line) {
    write(G_LOG_LEVEL_MESSAGE, "3", line);
}

void GLibLog::write(GLogLevelFlags level, char const* priority, std::string const& line) const {
    std::vector<GLogField> fields{{"PRIORITY", priority, -1}, {"MESSAGE", line.c_str(), -1}};
    if (origin) {
        fields.push_back({"GLIB_DOMAIN", origin->domain.c_str(), -1});
        fields.push_back({"CATEGORY", origin->category.c_str(), -1});
    }
    g_log_structured_array(level, fields.data(), fields.size());
}

} // namespace fcp
